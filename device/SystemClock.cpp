// SPDX-License-Identifier: MIT
#include "device/SystemClock.h"

#include <algorithm>
#include <chrono>

namespace device {

namespace {

/// 2001-01-01 00:00:00 UTC in the machine's count, which begins in 1970.
constexpr double referenceSeconds = 978307200.0;

}  // namespace

platform::Date SystemClock::now() const {
    const std::chrono::duration<double> time = std::chrono::system_clock::now().time_since_epoch();
    return {time.count() - referenceSeconds};
}

std::optional<double> SystemClock::secondsUntil(platform::Date instant) const {
    return std::max(0.0, instant.secondsSinceReference - now().secondsSinceReference);
}

}  // namespace device
