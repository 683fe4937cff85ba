// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform {

/// A calendar of one of the user's accounts. No events: nobody here asks for them.
struct CalendarEntry {
    /// Stable across restarts and independent of the name; tells calendars of one name apart.
    std::string identifier;
    std::string title;
    std::string account;
    /// 0xRRGGBB.
    std::uint32_t colour = 0;

    bool operator==(const CalendarEntry&) const = default;
};

/// The calendars that the phone knows. Main thread.
class CalendarSource {
  public:
    virtual ~CalendarSource() = default;

    /// As they are now: read anew at each call, in an order that only a change of the calendars changes. What
    /// cannot be read is left out and logged.
    virtual std::vector<CalendarEntry> calendars() = 0;
};

}  // namespace platform
