// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

#include <cmath>
#include <limits>
#include <string>

#include "platform/foundation/Calendar.h"
#include "tests/doubles/Phone.h"

namespace {

using platform::Calendar;
using platform::Date;
using platform::DateComponents;

constexpr std::uint64_t allUnits = platform::CalendarUnitYear | platform::CalendarUnitMonth |
                                   platform::CalendarUnitDay | platform::CalendarUnitHour |
                                   platform::CalendarUnitMinute | platform::CalendarUnitSecond;

/// The machine in a time zone of the test's choice.
class CalendarTest : public testing::Test {
  protected:
    CalendarTest() {
        if (const char* zone = ::getenv("TZ")) before_ = zone;
        setZone("UTC0");
    }
    ~CalendarTest() override {
        if (before_) {
            setZone(before_->c_str());
        } else {
            ::unsetenv("TZ");
            ::tzset();
        }
    }
    static void setZone(const char* zone) {
        ::setenv("TZ", zone, 1);
        ::tzset();
    }

    const Calendar calendar = Calendar::currentCalendar();

  private:
    std::optional<std::string> before_;
};

TEST_F(CalendarTest, components_areThoseOfTheLocalTime) {
    const Date date{86400.0 * 31 + 3600 * 13 + 60 * 5 + 7.9};
    EXPECT_EQ(calendar.components_fromDate(allUnits, date), (DateComponents{2001, 2, 1, 13, 5, 7}));
    setZone("IST-5:30");
    EXPECT_EQ(calendar.components_fromDate(allUnits, date), (DateComponents{2001, 2, 1, 18, 35, 7}));
}

TEST_F(CalendarTest, components_notAskedForAreZero) {
    EXPECT_EQ(
        calendar.components_fromDate(platform::CalendarUnitHour | platform::CalendarUnitYear, Date{3600}),
        (DateComponents{.year = 2001, .hour = 1}));
    EXPECT_EQ(calendar.component_fromDate(platform::CalendarUnitMonth, Date{3600}), 1);
    EXPECT_EQ(calendar.component_fromDate(platform::CalendarUnitYear, Date{-1}), 2000);
}

TEST_F(CalendarTest, timeOfDayAlone_liesOnTheReferenceDay) {
    const Date date = calendar.dateFromComponents({.hour = 9, .minute = 5});
    EXPECT_EQ(calendar.components_fromDate(allUnits, date), (DateComponents{2000, 1, 1, 9, 5, 0}));
}

TEST_F(CalendarTest, wholeComponents_comeBack) {
    setZone("EST5EDT,M3.2.0,M11.1.0");
    for (const DateComponents& parts :
         {DateComponents{2026, 7, 1, 12, 0, 0}, DateComponents{1969, 12, 31, 18, 59, 59},
          DateComponents{2024, 2, 29, 23, 59, 59}}) {
        EXPECT_EQ(calendar.components_fromDate(allUnits, calendar.dateFromComponents(parts)), parts);
    }
}

TEST_F(CalendarTest, componentsBeyondTheirRange_carryOver) {
    EXPECT_EQ(calendar.components_fromDate(allUnits, calendar.dateFromComponents({2025, 14, 1, 24, 0, 61})),
              (DateComponents{2026, 2, 2, 0, 1, 1}));
    constexpr auto huge = std::numeric_limits<std::int64_t>::max();
    constexpr auto least = std::numeric_limits<std::int64_t>::min();
    EXPECT_TRUE(std::isfinite(
        calendar.dateFromComponents({huge, huge, huge, huge, huge, huge}).secondsSinceReference));
    EXPECT_TRUE(std::isfinite(
        calendar.dateFromComponents({least, least, least, least, least, least}).secondsSinceReference));
}

TEST_F(CalendarTest, datesThatCannotBeTakenApart_haveNoComponents) {
    for (const double seconds : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -1e18, 9e16}) {
        EXPECT_EQ(calendar.components_fromDate(allUnits, Date{seconds}), DateComponents{}) << seconds;
    }
}

TEST(DateNow, withADevice_isItsClock) {
    doubles::Phone phone;
    EXPECT_EQ(platform::dateNow(), phone.clock->now());
    phone.advance(10);
    EXPECT_EQ(platform::dateNow(), phone.clock->now());
}

TEST(DateNow, withoutAClock_isTheSystemsTime) {
    doubles::Phone phone;
    phone.clock.reset();
    phone.install();
    constexpr double referenceInUnixTime = 978307200;
    const auto before = static_cast<double>(::time(nullptr)) - referenceInUnixTime - 1;
    const double now = platform::dateNow().secondsSinceReference;
    const auto after = static_cast<double>(::time(nullptr)) - referenceInUnixTime + 2;
    EXPECT_GT(now, before);
    EXPECT_LT(now, after);
}

}  // namespace
