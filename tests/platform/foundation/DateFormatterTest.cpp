// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "platform/foundation/Calendar.h"
#include "platform/foundation/DateFormatter.h"

namespace {

using platform::Calendar;
using platform::Date;
using platform::DateComponents;
using platform::DateFormatter;

DateFormatter formatter(const char* pattern) {
    DateFormatter made;
    made.setDateFormat(pattern);
    return made;
}
Date dateOf(const DateComponents& parts) {
    return Calendar::currentCalendar().dateFromComponents(parts);
}

TEST(DateFormatter, timesOfDay_areWrittenWithTheTwelveHourClock) {
    const DateFormatter times = formatter("h:mm a");
    EXPECT_EQ(times.stringFromDate(dateOf({.hour = 9, .minute = 5})), "9:05 AM");
    EXPECT_EQ(times.stringFromDate(dateOf({.hour = 0, .minute = 0})), "12:00 AM");
    EXPECT_EQ(times.stringFromDate(dateOf({.hour = 12, .minute = 30})), "12:30 PM");
    EXPECT_EQ(times.stringFromDate(dateOf({.hour = 23, .minute = 59})), "11:59 PM");
}

TEST(DateFormatter, everyMinuteOfTheDay_isReadAsItWasWritten) {
    const DateFormatter times = formatter("h:mm a");
    for (int minute = 0; minute < 24 * 60; ++minute) {
        const Date date = dateOf({.hour = minute / 60, .minute = minute % 60});
        EXPECT_EQ(times.dateFromString(times.stringFromDate(date)), date);
    }
}

TEST(DateFormatter, everyField_isWrittenInItsWidth) {
    const Date date = dateOf({2026, 3, 4, 5, 6, 7});
    EXPECT_EQ(formatter("y-M-d H:m:s").stringFromDate(date), "2026-3-4 5:6:7");
    EXPECT_EQ(formatter("yyyy-MM-dd HH:mm:ss").stringFromDate(date), "2026-03-04 05:06:07");
    EXPECT_EQ(formatter("hh a").stringFromDate(dateOf({.hour = 17})), "05 PM");
    EXPECT_EQ(formatter("yyyy").stringFromDate(dateOf({.year = 33})), "0033");
}

TEST(DateFormatter, quotedLetters_areLiteral) {
    const Date date = dateOf({2026, 3, 4, 5, 6, 7});
    const DateFormatter quoted = formatter("H 'h' 'o''clock' '' d.");
    EXPECT_EQ(quoted.stringFromDate(date), "5 h o'clock ' 4.");
    EXPECT_EQ(quoted.dateFromString("5 h o'clock ' 4."), dateOf({.day = 4, .hour = 5}));
    EXPECT_EQ(quoted.dateFromString("5 x o'clock ' 4."), std::nullopt);
}

TEST(DateFormatter, halvesOfTheDay_areReadInAnyCaseAndWithAnyBlanks) {
    const DateFormatter times = formatter("h:mm a");
    const Date expected = dateOf({.hour = 21, .minute = 5});
    for (const char* text :
         {"9:05 PM", "9:05 pm", "9:05PM", "09:05  Pm ", "9:05\u00A0PM", "9:05\u202FpM", "9:5 PM"}) {
        EXPECT_EQ(times.dateFromString(text), expected) << text;
    }
}

TEST(DateFormatter, missingParts_areThoseOfTheReferenceDay) {
    EXPECT_EQ(formatter("HH:mm").dateFromString("10:30"), dateOf({2000, 1, 1, 10, 30, 0}));
    EXPECT_EQ(formatter("a").dateFromString("PM"), dateOf({.hour = 12}));
    EXPECT_EQ(formatter("h").dateFromString("12"), dateOf({.hour = 0}));
    EXPECT_EQ(formatter("HHmm").dateFromString("0930"), dateOf({.hour = 9, .minute = 30}));
}

TEST(DateFormatter, textThatDoesNotFit_givesNothing) {
    const DateFormatter times = formatter("h:mm a");
    for (const char* text : {"", "9:05", "0:05 AM", "13:05 AM", "9:60 AM", "9:05 AMX", "9:05 XM", "x9:05 AM",
                             "9.05 AM", ":05 AM", "9:05 A", "-9:05 AM", "9:005 AM"}) {
        EXPECT_EQ(times.dateFromString(text), std::nullopt) << text;
    }
    const DateFormatter days = formatter("yyyy-MM-dd");
    EXPECT_TRUE(days.dateFromString("2024-02-29"));
    for (const char* text :
         {"2026-02-29", "2026-04-31", "2026-13-01", "2026-00-01", "2026-01-00", "0000-01-01"}) {
        EXPECT_EQ(days.dateFromString(text), std::nullopt) << text;
    }
}

TEST(DateFormatter, dateThatCannotBeTakenApart_givesNoText) {
    EXPECT_EQ(formatter("h:mm a").stringFromDate(Date{std::nan("")}), "");
}

}  // namespace
