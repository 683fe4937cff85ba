// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <ctime>

#include "device/SystemClock.h"
#include "device/VirtualClock.h"
#include "tests/doubles/Required.h"

namespace {

using device::VirtualClock;
using doubles::errorOf;
using platform::Date;

TEST(VirtualClock, parse_isLocalTime) {
    const auto date = VirtualClock::parse("2026-11-20T09:08:07");
    ASSERT_TRUE(date);
    const auto seconds = static_cast<std::time_t>(date->secondsSinceReference + 978307200.0);
    std::tm local{};
    localtime_r(&seconds, &local);
    EXPECT_EQ(local.tm_year, 126);
    EXPECT_EQ(local.tm_mon, 10);
    EXPECT_EQ(local.tm_mday, 20);
    EXPECT_EQ(local.tm_hour, 9);
    EXPECT_EQ(local.tm_min, 8);
    EXPECT_EQ(local.tm_sec, 7);
}

TEST(VirtualClock, parse_badTexts_areErrorsThatNameThem) {
    for (const char* text :
         {"", "2026-11-20", "2026-11-20 09:00:00", "2026-11-20T09:00:00Z", "2026-13-20T09:00:00",
          "2026-06-31T09:00:00", "2026-02-29T09:00:00", "2026-11-20T24:00:00", "2026-11-20T09:60:00",
          "2026-11-20T09:00:60", "2026-00-20T09:00:00", "x026-11-20T09:00:00"}) {
        const auto date = VirtualClock::parse(text);
        ASSERT_FALSE(date) << text;
        EXPECT_EQ(errorOf(date),
                  "\"" + std::string(text) + "\" is no date and time such as 2026-11-20T09:00:00.");
    }
    EXPECT_TRUE(VirtualClock::parse("2028-02-29T23:59:59"));
}

TEST(VirtualClock, moves_onlyForwardAndOnlyWhenTold) {
    VirtualClock clock(Date{100});
    EXPECT_EQ(clock.now(), Date{100});
    EXPECT_EQ(clock.secondsUntil(Date{100}), 0.0);
    EXPECT_EQ(clock.secondsUntil(Date{101}), std::nullopt);
    clock.moveTo(Date{150});
    clock.moveTo(Date{120});
    EXPECT_EQ(clock.now(), Date{150});
}

TEST(SystemClock, secondsUntil_isZeroOnceReached) {
    const device::SystemClock clock;
    const double now = clock.now().secondsSinceReference;
    EXPECT_EQ(clock.secondsUntil(Date{now}), 0.0);
    const auto wait = clock.secondsUntil(Date{now + 1000});
    ASSERT_TRUE(wait);
    EXPECT_GT(*wait, 0.0);
    EXPECT_LE(*wait, 1000.0);
    EXPECT_EQ(static_cast<std::time_t>(now) / 1000, (std::time(nullptr) - 978307200) / 1000);
}

}  // namespace
