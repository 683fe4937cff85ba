// SPDX-License-Identifier: MIT
#include "platform/foundation/Calendar.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <limits>
#include <optional>

#include "platform/foundation/Device.h"

namespace platform {

namespace {

constexpr double referenceInUnixTime = 978307200.0;
constexpr std::int64_t referenceYear = 2000;
constexpr std::int64_t referenceMonth = 1;
constexpr std::int64_t referenceDay = 1;

/// The local time of the instant; empty when the machine cannot tell it.
std::optional<std::tm> localTime(Date date) {
    // Keeps the cast defined; far beyond it localtime_r has no year to answer with anyway.
    constexpr double limit = 1e17;
    const double seconds = std::floor(date.secondsSinceReference + referenceInUnixTime);
    if (!(std::abs(seconds) < limit)) return std::nullopt;
    const auto instant = static_cast<std::time_t>(seconds);
    std::tm time{};
    if (::localtime_r(&instant, &time) == nullptr) return std::nullopt;
    return time;
}

int clamped(std::int64_t number) {
    // A quarter of the range, so that what mktime adds while it normalises does not overflow.
    constexpr std::int64_t limit = std::numeric_limits<int>::max() / 4;
    return static_cast<int>(std::clamp(number, -limit, limit));
}

std::int64_t orReference(std::int64_t component, std::int64_t reference) {
    return component == 0 ? reference : component;
}

}  // namespace

std::int64_t Calendar::component_fromDate(CalendarUnit unit, Date date) const {
    const DateComponents parts = components_fromDate(unit, date);
    // All but one are 0.
    return parts.year + parts.month + parts.day + parts.hour + parts.minute + parts.second;
}

DateComponents Calendar::components_fromDate(std::uint64_t units, Date date) const {
    DateComponents parts;
    const auto time = localTime(date);
    if (!time) return parts;
    if ((units & CalendarUnitYear) != 0) parts.year = std::int64_t{time->tm_year} + 1900;
    if ((units & CalendarUnitMonth) != 0) parts.month = time->tm_mon + 1;
    if ((units & CalendarUnitDay) != 0) parts.day = time->tm_mday;
    if ((units & CalendarUnitHour) != 0) parts.hour = time->tm_hour;
    if ((units & CalendarUnitMinute) != 0) parts.minute = time->tm_min;
    if ((units & CalendarUnitSecond) != 0) parts.second = time->tm_sec;
    return parts;
}

Date Calendar::dateFromComponents(const DateComponents& components) const {
    std::tm time{};
    time.tm_year = clamped(orReference(components.year, referenceYear)) - 1900;
    time.tm_mon = clamped(orReference(components.month, referenceMonth)) - 1;
    time.tm_mday = clamped(orReference(components.day, referenceDay));
    time.tm_hour = clamped(components.hour);
    time.tm_min = clamped(components.minute);
    time.tm_sec = clamped(components.second);
    time.tm_isdst = -1;
    return Date{static_cast<double>(std::mktime(&time)) - referenceInUnixTime};
}

Date dateNow() {
    if (const auto& clock = Device::current().clock) return clock->now();
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    return Date{now.count() - referenceInUnixTime};
}

}  // namespace platform
