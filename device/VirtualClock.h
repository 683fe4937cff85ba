// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <string>
#include <string_view>

#include "platform/foundation/Clock.h"
#include "platform/foundation/Error.h"

namespace device {

/// A clock that stands still until it is told to move.
class VirtualClock : public platform::Clock {
  public:
    explicit VirtualClock(platform::Date start) : now_(start.secondsSinceReference) {}

    /// The instant of a local date and time, "2026-11-20T09:00:00"; the error says what was expected.
    static platform::Result<platform::Date> parse(std::string_view text);
    /// Such a text, of an instant whose year has four digits; parts of a second do not show.
    static std::string text(platform::Date instant);
    /// The end of the year 9999, the first instant without such a text: no clock gets there.
    static platform::Date end();

    platform::Date now() const override { return {now_}; }
    std::optional<double> secondsUntil(platform::Date instant) const override;
    /// Moves forward to the instant without running anything; an earlier one is ignored. Any thread.
    void moveTo(platform::Date instant);

  private:
    std::atomic<double> now_;
};

/// Moves the clock forward by so many seconds while the main run loop runs: the delayed calls on the way are
/// made in the order of their instants, each while the clock shows its own instant, with everything that they
/// cause done before the clock moves on. The clock must be the installed device's. Negative or endless
/// seconds, and so many that the clock would leave the year 9999, are an error and move nothing. Main thread;
/// not from within a task.
platform::Result<void> advanceRunning(VirtualClock& clock, double seconds);

}  // namespace device
