// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "device/VirtualClock.h"
#include "platform/foundation/Error.h"

namespace settings {

/// The machine's time in a recording: it stands still while something is done and moves between two such
/// things. As long as it lives, the journal counts it. One at a time; main thread.
class RecordedTime {
  public:
    /// "2026-11-20T09:00:00.125" of this machine's time zone, which is the time to the millisecond.
    static std::string textOfNow();
    static platform::Result<platform::Date> parse(std::string_view text);

    explicit RecordedTime(platform::Date start);
    ~RecordedTime();
    RecordedTime(const RecordedTime&) = delete;
    RecordedTime& operator=(const RecordedTime&) = delete;

    /// For a phone that has its machine's time.
    const std::shared_ptr<device::VirtualClock>& clock() const { return clock_; }
    /// Since the start.
    std::int64_t milliseconds() const { return milliseconds_; }
    /// Does what is left to do, then goes on to so many milliseconds since the start, delayed calls being
    /// made on the way, each at its instant. An earlier time is the present one.
    void goOnTo(std::int64_t milliseconds);

  private:
    platform::Date start_;
    std::shared_ptr<device::VirtualClock> clock_;
    std::int64_t milliseconds_ = 0;
};

}  // namespace settings
