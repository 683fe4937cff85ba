// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "platform/foundation/Value.h"

namespace platform {

/// Units of a calendar, as a mask.
enum CalendarUnit : std::uint64_t {
    CalendarUnitYear = 4,
    CalendarUnitMonth = 8,
    CalendarUnitDay = 16,
    CalendarUnitHour = 32,
    CalendarUnitMinute = 64,
    CalendarUnitSecond = 128
};

/// A date taken apart; a component that was not asked for is 0 (month and day count from 1 when asked for).
struct DateComponents {
    std::int64_t year = 0;
    std::int64_t month = 0;
    std::int64_t day = 0;
    std::int64_t hour = 0;
    std::int64_t minute = 0;
    std::int64_t second = 0;

    bool operator==(const DateComponents&) const = default;
};

/// The Gregorian calendar in the machine's time zone. Usable from any thread.
class Calendar {
  public:
    static Calendar currentCalendar() { return {}; }

    /// A date that is no number, or too far away for the machine to take apart, has components of 0 only.
    std::int64_t component_fromDate(CalendarUnit unit, Date date) const;
    DateComponents components_fromDate(std::uint64_t units, Date date) const;
    /// Missing year, month or day (0) are those of one fixed reference day, 2000-01-01, so that dates made of
    /// times of day alone can be compared. What exceeds its range carries over: hour 24 is the next day's
    /// hour 0.
    Date dateFromComponents(const DateComponents& components) const;
};

/// The present instant of the device's clock; of the system's, when the device has none. Any thread.
Date dateNow();

}  // namespace platform
