// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "device/calendars/CalendarHead.h"
#include "tests/doubles/Required.h"

namespace {

using device::CalendarHead;
using doubles::errorOf;
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
    EXPECT_THAT(parsed("BEGIN:VCALENDAR\nNAME:\nX-WR-CALNAME:caf\xE9\n").name,
                Optional(std::string("caf\xE9")));
    EXPECT_THAT(parsed("BEGIN:VCALENDAR\n\r\n \n\n b\nX-1;A=b:c d\nNAME:Blank lines\n").name,
                Optional(std::string("Blank lines")));
    EXPECT_THAT(parsed("BEGIN:VCALENDAR\nX-WR-\r\n CAL\n\tNAME:Folded\n").name,
                Optional(std::string("Folded")));
}

TEST(CalendarHead, namesInAnyLetters_areTaken) {
    const CalendarHead small = parsed(calendar("x-wr-calname:Team\r\nx-apple-calendar-color:#FF2D55FF\r\n"));
    EXPECT_THAT(small.name, Optional(std::string("Team")));
    EXPECT_THAT(small.colour, Optional(std::string("#FF2D55FF")));
    const CalendarHead mixed = parsed(calendar("Name:My team\r\ncolor:turquoise\r\n"));
    EXPECT_THAT(mixed.name, Optional(std::string("My team")));
    EXPECT_THAT(mixed.colour, Optional(std::string("turquoise")));
    EXPECT_THAT(parsed(calendar("x-wr-\r\n cal\r\n name;value=text:One\\, \r\n two\r\n")).name,
                Optional(std::string("One, two")));
}

TEST(CalendarHead, lineThatIsNoProperty_breaksTheFile) {
    for (const char* line : {"garbage", "NAME", ":x", ";A=b:x", "two words:x", "na\xC3\xAFve:x", "X.Y:z",
                             "NAME\n :x\nno\n fold", "<html>\n:x"}) {
        const std::string text = "BEGIN:VCALENDAR\nVERSION:2.0\n" + std::string(line) + "\nNAME:x\n";
        EXPECT_FALSE(CalendarHead::parse(text)) << line;
    }
    const auto head = CalendarHead::parse("\nBEGIN:VCALENDAR\r\nVERSION:2.0\r\n folded\r\n\r\ngarbage");
    ASSERT_FALSE(head);
    EXPECT_EQ(errorOf(head), "is no iCalendar file: its line 6 is no property");
}

TEST(CalendarHead, underscoreInAName_isTaken) {
    EXPECT_THAT(parsed("BEGIN:VCALENDAR\nX-A_B:c\nNAME:a\n").name, Optional(std::string("a")));
}

TEST(CalendarHead, garbageBehindTheHead_isNotLookedAt) {
    EXPECT_THAT(parsed("BEGIN:VCALENDAR\nNAME:a\nBEGIN:VEVENT\ngarbage\n").name, Optional(std::string("a")));
    EXPECT_THAT(parsed("BEGIN:VCALENDAR\nNAME:a\nend:vcalendar\ngarbage\n").name, Optional(std::string("a")));
}

TEST(CalendarHead, colourThatIsNone_doesNotHideAGoodOne) {
    EXPECT_THAT(parsed(calendar("COLOR:teal\r\nX-APPLE-CALENDAR-COLOR:loud\r\n")).colour,
                Optional(std::string("teal")));
    EXPECT_THAT(
        parsed(calendar("X-APPLE-CALENDAR-COLOR:loud\r\nX-APPLE-CALENDAR-COLOR:#FF0001\r\nCOLOR:red\r\n"))
            .colour,
        Optional(std::string("#FF0001")));
    EXPECT_THAT(parsed(calendar("COLOR:shrill\r\nX-APPLE-CALENDAR-COLOR:loud\r\n")).colour,
                Optional(std::string("loud")));
}

TEST(CalendarHead, otherFiles_areRefused) {
    EXPECT_EQ(errorOf(CalendarHead::parse("")), "does not begin with BEGIN:VCALENDAR");
    EXPECT_FALSE(CalendarHead::parse("BEGIN:VCARD\nNAME:x\nEND:VCARD\n"));
    EXPECT_FALSE(CalendarHead::parse("\n \nNAME:x\n"));
    EXPECT_EQ(errorOf(CalendarHead::parse(std::string("BEGIN:VCALENDAR\nNAME:a\0b\n", 25))),
              "holds a null character");
}

TEST(CalendarHead, lineThatTheLimitCuts_isNoName) {
    std::string text = "BEGIN:VCALENDAR\nX-WR-CALDESC:";
    text.append(CalendarHead::maximumSize - text.size() - 8, 'x').append("\nNAME:A long name\n");
    EXPECT_FALSE(parsed(text).name);
    EXPECT_FALSE(parsed(text.substr(0, CalendarHead::maximumSize)).name);
}

TEST(CalendarHead, lineThatTheLimitCuts_isNotAskedToBeAProperty) {
    std::string text = "BEGIN:VCALENDAR\nNAME:Whole\nX-WR-CALDESC:";
    text.append(CalendarHead::maximumSize - text.size() - 3, 'x').append("\nCO");
    ASSERT_EQ(text.size(), CalendarHead::maximumSize);
    EXPECT_THAT(parsed(text).name, Optional(std::string("Whole")));
    EXPECT_FALSE(CalendarHead::parse(text.substr(1 + text.find('\n')).insert(0, "BEGIN:VCALENDAR\nx\n")));
}

TEST(CalendarHead, tailOfAWholeFile_endsWithTheCalendarsEnd) {
    for (const char* end :
         {"END:VCALENDAR", "end:VCalendar\n", "END:VCALENDAR \t\r\n\r\n \n", "END:VCALENDAR\r\r"}) {
        EXPECT_TRUE(CalendarHead::isTailOfWholeFile("END:VEVENT\n" + std::string(end))) << end;
        EXPECT_TRUE(CalendarHead::isTailOfWholeFile("END:VEVENT\r" + std::string(end))) << end;
    }
}

TEST(CalendarHead, tailOfAFileThatWasCutShort_isFound) {
    for (const char* tail :
         {"", "\n", " \r\n", "BEGIN:VCALENDAR\r\n", "\nEND:VEVENT\n", "\nEND:VCALENDA", "\nX-END:VCALENDAR\n",
          "\nNAME:a\n END:VCALENDAR\n", "\nEND:VCALENDAR\nBEGIN:VCALENDAR", "END:VCALENDAR"})
        EXPECT_FALSE(CalendarHead::isTailOfWholeFile(tail)) << tail;
    EXPECT_FALSE(CalendarHead::isTailOfWholeFile(std::string("\nEND:VCALENDAR\0", 15)));
}

TEST(CalendarHead, onlyTheLastBytesOfATail_count) {
    const std::string end = "\nEND:VCALENDAR";
    EXPECT_TRUE(CalendarHead::isTailOfWholeFile(end + std::string(CalendarHead::tailSize - end.size(), ' ')));
    EXPECT_FALSE(
        CalendarHead::isTailOfWholeFile(end + std::string(CalendarHead::tailSize - end.size() + 1, ' ')));
}

}  // namespace
