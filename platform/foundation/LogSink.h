// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

/// Where the lines of the system log go. Usable from any thread.
class LogSink {
  public:
    virtual ~LogSink() = default;

    /// One line, without its line break.
    virtual void write(const std::string& line) = 0;
};

/// Writes one line to the device's system log and to the journal; line breaks in the text become blanks.
/// Any thread. Before a device is installed, the line goes to standard error.
void log(const std::string& line);

}  // namespace platform
