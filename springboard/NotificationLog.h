// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace springboard {

/// The log file of the phone's system-wide notifications, one line for each: the time in UTC and the name.
/// Several processes may append to one file; a line is written in one piece. Main thread.
class NotificationLog {
  public:
    /// A file that would grow beyond this is put aside as PATH.old, in place of the one before.
    static constexpr long maximumSize = 1L << 20;

    /// A host path.
    explicit NotificationLog(std::string path) : path_(std::move(path)) {}

    /// A line that cannot be written is told in the system log.
    void write(std::chrono::system_clock::time_point time, std::string_view name);

  private:
    void putAside(int file) const;

    std::string path_;
};

}  // namespace springboard
