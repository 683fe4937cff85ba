// SPDX-License-Identifier: MIT
#include "settings/recording/RecordedTime.h"

#include <algorithm>
#include <cmath>

#include "device/SystemClock.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/RunLoop.h"

namespace settings {

namespace {

constexpr double perSecond = 1000;
constexpr std::string_view fractionPattern = ".000";

}  // namespace

std::string RecordedTime::textOfNow() {
    const double now = device::SystemClock().now().secondsSinceReference;
    const double second = std::floor(now);
    const int fraction = std::min(static_cast<int>((now - second) * perSecond), 999);
    const std::string digits = std::to_string(fraction);
    std::string text = device::VirtualClock::text({second}) + ".";
    return text.append(3 - digits.size(), '0') + digits;
}

platform::Result<platform::Date> RecordedTime::parse(std::string_view text) {
    const std::size_t length = text.size() - std::min(text.size(), fractionPattern.size());
    const std::string_view fraction = text.substr(length);
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (fraction.size() != fractionPattern.size() || fraction[0] != '.' ||
        !std::ranges::all_of(fraction.substr(1), isDigit)) {
        return platform::failure("\"" + std::string(text) +
                                 "\" is no date and time such as 2026-11-20T09:00:00.125.");
    }
    const auto second = device::VirtualClock::parse(text.substr(0, length));
    if (!second) return second;
    const int thousandths = (fraction[1] - '0') * 100 + (fraction[2] - '0') * 10 + (fraction[3] - '0');
    return platform::Date{second->secondsSinceReference + thousandths / perSecond};
}

RecordedTime::RecordedTime(platform::Date start)
    : start_(start), clock_(std::make_shared<device::VirtualClock>(start)) {
    platform::Journal::shared().setClock([start, clock = clock_] {
        return (clock->now().secondsSinceReference - start.secondsSinceReference) * perSecond;
    });
}

RecordedTime::~RecordedTime() {
    platform::Journal::shared().setClock({});
}

void RecordedTime::goOnTo(std::int64_t milliseconds) {
    platform::RunLoop& loop = platform::RunLoop::main();
    loop.drain();
    milliseconds_ = std::max(milliseconds_, milliseconds);
    const platform::Date target{start_.secondsSinceReference +
                                static_cast<double>(milliseconds_) / perSecond};
    const double seconds = target.secondsSinceReference - clock_->now().secondsSinceReference;
    // Refused only where the calendar ends: there time stands still.
    if (platform::Device::current().clock == clock_ && seconds > 0)
        static_cast<void>(device::advanceRunning(*clock_, seconds));
    clock_->moveTo(target);
    loop.drain();
}

}  // namespace settings
