// SPDX-License-Identifier: MIT
#include "device/VirtualClock.h"

#include <array>
#include <charconv>
#include <cmath>
#include <ctime>
#include <string>

#include "platform/foundation/RunLoop.h"

namespace device {

namespace {

/// 2001-01-01 00:00:00 UTC in the machine's count, which begins in 1970.
constexpr double referenceSeconds = 978307200.0;
constexpr std::string_view pattern = "0000-00-00T00:00:00";

bool fitsPattern(std::string_view text) {
    if (text.size() != pattern.size()) return false;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool digit = text[i] >= '0' && text[i] <= '9';
        if (pattern[i] == '0' ? !digit : text[i] != pattern[i]) return false;
    }
    return true;
}

int number(std::string_view text, std::size_t position, std::size_t length) {
    int value = 0;
    std::from_chars(text.data() + position, text.data() + position + length, value);
    return value;
}

}  // namespace

platform::Result<platform::Date> VirtualClock::parse(std::string_view text) {
    const auto bad = [&] {
        return platform::failure("\"" + std::string(text) +
                                 "\" is no date and time such as 2026-11-20T09:00:00.");
    };
    if (!fitsPattern(text)) return bad();
    std::tm time{};
    time.tm_year = number(text, 0, 4) - 1900;
    time.tm_mon = number(text, 5, 2) - 1;
    time.tm_mday = number(text, 8, 2);
    time.tm_hour = number(text, 11, 2);
    time.tm_min = number(text, 14, 2);
    time.tm_sec = number(text, 17, 2);
    time.tm_isdst = -1;
    if (time.tm_hour > 23 || time.tm_min > 59 || time.tm_sec > 59) return bad();
    // The library carries a 31st of June over into July: what comes back then is another day. The hour may
    // change, where clocks skip one.
    std::tm normalised = time;
    const std::time_t instant = std::mktime(&normalised);
    if (normalised.tm_mon != time.tm_mon || normalised.tm_mday != time.tm_mday) return bad();
    return platform::Date{static_cast<double>(instant) - referenceSeconds};
}

std::string VirtualClock::text(platform::Date instant) {
    const auto moment =
        static_cast<std::time_t>(std::floor(instant.secondsSinceReference + referenceSeconds));
    std::tm time{};
    localtime_r(&moment, &time);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &time)};
}

platform::Date VirtualClock::end() {
    return {parse("9999-12-31T23:59:59").value().secondsSinceReference + 1};
}

std::optional<double> VirtualClock::secondsUntil(platform::Date instant) const {
    if (instant <= now()) return 0.0;
    return std::nullopt;
}

void VirtualClock::moveTo(platform::Date instant) {
    double present = now_;
    while (instant.secondsSinceReference > present &&
           !now_.compare_exchange_weak(present, instant.secondsSinceReference)) {
    }
}

platform::Result<void> advanceRunning(VirtualClock& clock, double seconds) {
    if (!(seconds >= 0) || !std::isfinite(seconds)) {
        return platform::failure("The clock moves forward only, by a number of seconds.");
    }
    platform::RunLoop& loop = platform::RunLoop::main();
    const platform::Date end{clock.now().secondsSinceReference + seconds};
    if (end >= VirtualClock::end()) {
        return platform::failure("The clock goes no further than to the end of the year 9999.");
    }
    loop.drain();
    for (auto next = loop.nextTimer(); next && *next <= end; next = loop.nextTimer()) {
        clock.moveTo(*next);
        loop.drain();
    }
    clock.moveTo(end);
    loop.drain();
    return {};
}

}  // namespace device
