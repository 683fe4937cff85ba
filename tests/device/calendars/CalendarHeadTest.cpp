// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "device/calendars/CalendarHead.h"

namespace {

using device::CalendarHead;
using testing::Optional;

CalendarHead parsed(const std::string& text) {
    const auto head = CalendarHead::parse(text);
    EXPECT_TRUE(head) << head.error().localizedDescription;
    return head.value_or(CalendarHead());
}

std::string calendar(const std::string& lines) {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + lines +
           "BEGIN:VEVENT\r\nNAME:event\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
}

TEST(CalendarHead, nameAndColour_inTheirOldAndNewSpelling) {
    const CalendarHead old = parsed(calendar("X-WR-CALNAME:Team\r\nX-APPLE-CALENDAR-COLOR:#FF2D55FF\r\n"));
    EXPECT_THAT(old.name, Optional(std::string("Team")));
    EXPECT_THAT(old.colour, Optional(std::string("#FF2D55FF")));
    const CalendarHead standard = parsed(calendar("NAME:Team\r\nCOLOR:turquoise\r\n"));
    EXPECT_THAT(standard.name, Optional(std::string("Team")));
    EXPECT_THAT(standard.colour, Optional(std::string("turquoise")));
}

TEST(CalendarHead, bothSpellings_takeTheStandardNameAndTheExactColour) {
    const CalendarHead head =
        parsed(calendar("X-WR-CALNAME:Old\r\nCOLOR:red\r\nNAME:New\r\nX-APPLE-CALENDAR-COLOR:#FF0001\r\n"));
    EXPECT_THAT(head.name, Optional(std::string("New")));
    EXPECT_THAT(head.colour, Optional(std::string("#FF0001")));
}

TEST(CalendarHead, values_areUnfoldedAndUnescaped) {
    EXPECT_THAT(parsed(calendar("NAME:One\\, tw\r\n o\\; three\r\n")).name,
                Optional(std::string("One, two; three")));
    EXPECT_THAT(parsed(calendar("X-WR-CALNAME;VALUE=TEXT:One\\, two\r\n")).name,
                Optional(std::string("One, two")));
    EXPECT_THAT(parsed(calendar("X-WR-CALNAME:One\\, two\r\n")).name, Optional(std::string("One, two")));
    EXPECT_THAT(parsed(calendar("NAME;LANGUAGE=de:Erste\r\nNAME;LANGUAGE=en:Second\r\n")).name,
                Optional(std::string("Erste")));
}

TEST(CalendarHead, eventsOwnProperties_doNotCount) {
    EXPECT_FALSE(parsed(calendar("")).name);
    EXPECT_FALSE(parsed("BEGIN:VCALENDAR\nEND:VCALENDAR\nNAME:after\n").name);
}

TEST(CalendarHead, looseFiles_areTaken) {
    EXPECT_THAT(parsed("\xEF\xBB\xBF\n\nbegin:vcalendar \nname:Bare\n").name, Optional(std::string("Bare")));
    EXPECT_FALSE(parsed("BEGIN:VCALENDAR").name);
    EXPECT_THAT(parsed("BEGIN:VCALENDAR\nNAME\n:x\nNAME:\nX-WR-CALNAME:caf\xE9\n").name,
                Optional(std::string("caf\xE9")));
}

TEST(CalendarHead, otherFiles_areRefused) {
    EXPECT_EQ(CalendarHead::parse("").error().localizedDescription, "does not begin with BEGIN:VCALENDAR");
    EXPECT_FALSE(CalendarHead::parse("BEGIN:VCARD\nNAME:x\nEND:VCARD\n"));
    EXPECT_FALSE(CalendarHead::parse("\n \nNAME:x\n"));
    EXPECT_EQ(
        CalendarHead::parse(std::string("BEGIN:VCALENDAR\nNAME:a\0b\n", 25)).error().localizedDescription,
        "holds a null character");
}

TEST(CalendarHead, lineThatTheLimitCuts_isNoName) {
    std::string text = "BEGIN:VCALENDAR\nX-WR-CALDESC:";
    text.append(CalendarHead::maximumSize - text.size() - 8, 'x').append("\nNAME:A long name\n");
    EXPECT_FALSE(parsed(text).name);
    EXPECT_FALSE(parsed(text.substr(0, CalendarHead::maximumSize)).name);
}

}  // namespace
