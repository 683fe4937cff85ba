// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "device/calendars/CalendarFolders.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using device::CalendarFolders;
using platform::CalendarEntry;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::writeText;
using Missing = CalendarFolders::Missing;

class CalendarFoldersTest : public testing::Test {
  protected:
    doubles::Phone phone;
    testing_support::TemporaryDirectory directory;
    CalendarFolders source{directory.path(), CalendarFolders::Missing::IsAFault};

    void put(const std::string& path, const std::string& text) { writeText(directory / path, text); }
    std::vector<std::string> titles() {
        std::vector<std::string> titles;
        for (const CalendarEntry& calendar : source.calendars()) titles.push_back(calendar.title);
        return titles;
    }
    std::vector<std::string> identifiers() {
        std::vector<std::string> identifiers;
        for (const CalendarEntry& calendar : source.calendars()) identifiers.push_back(calendar.identifier);
        return identifiers;
    }
};

std::string named(const std::string& name) {
    return "BEGIN:VCALENDAR\r\nX-WR-CALNAME:" + name + "\r\nCOLOR:teal\r\nEND:VCALENDAR\r\n";
}

TEST_F(CalendarFoldersTest, foldersAndFiles_areCalendarsOfTheirAccount) {
    put("Home/personal/displayname", "Personal\n");
    put("Home/personal/color", "#34C759\n");
    put("Home/personal/one.ics", "no calendar: nobody looks at it");
    put("Work/team.ics", named("Team"));
    EXPECT_THAT(source.calendars(), ElementsAre(CalendarEntry{"Home/personal", "Personal", "Home", 0x34C759},
                                                CalendarEntry{"Work/team.ics", "Team", "Work", 0x008080}));
    EXPECT_THAT(phone.log->lines(), IsEmpty());
}

TEST_F(CalendarFoldersTest, sameNameInTwoAccounts_staysApart) {
    put("A/cal/displayname", "Shared");
    put("B/cal/displayname", "Shared");
    EXPECT_THAT(identifiers(), ElementsAre("A/cal", "B/cal"));
    EXPECT_THAT(titles(), ElementsAre("Shared", "Shared"));
}

TEST_F(CalendarFoldersTest, renamedCalendar_keepsItsIdentifier) {
    put("A/cal/displayname", "Before");
    const auto before = identifiers();
    put("A/cal/displayname", "After");
    EXPECT_EQ(CalendarFolders(directory.path(), Missing::IsAFault).calendars().at(0).identifier,
              before.at(0));
    EXPECT_THAT(titles(), ElementsAre("After"));
}

TEST_F(CalendarFoldersTest, calendarWithoutAName_isCalledLikeItsFolderOrFile) {
    put("A/folder/event.ics", named("not the calendar's"));
    put("A/blank/displayname", " \n");
    put("A/file.v2.ics", "BEGIN:VCALENDAR\nEND:VCALENDAR\n");
    EXPECT_THAT(titles(), ElementsAre("blank", "file.v2", "folder"));
}

TEST_F(CalendarFoldersTest, nameThatShowsNothing_isNone) {
    put("A/blanks/displayname", "\xEF\xBB\xBF \u00A0\u200B\u2028\u2029\u0085\u3000\t\r\n");
    put("A/file.ics", named("\xEF\xBB\xBF\u00A0"));
    put("A/joiners/displayname", "\u200D\u2060\uFE0F");
    put("A/\u3000/displayname", "\u200B");
    EXPECT_THAT(titles(), ElementsAre("blanks", "file", "joiners", "A"));
}

TEST_F(CalendarFoldersTest, calendarWhoseAccountShowsNothingEither_isCalledLikeItsIdentifier) {
    put("\u00A0/\u3000/displayname", " ");
    EXPECT_THAT(titles(), ElementsAre("/"));
}

TEST_F(CalendarFoldersTest, blanksAroundANameOrColour_areDropped) {
    put("A/folder/displayname", "\xEF\xBB\xBF\u3000 Team\u00A0one \u200B\n");
    put("A/folder/color", "\xEF\xBB\xBF#34C759\u00A0\n");
    put("A/none/color", "\xEF\xBB\xBF\n");
    put("A/file.ics", named("\xEF\xBB\xBFTeam\u0085"));
    EXPECT_THAT(titles(), ElementsAre("Team", "Team\u00A0one", "none"));
    EXPECT_EQ(source.calendars().at(1).colour, 0x34C759U);
    EXPECT_THAT(phone.log->lines(), IsEmpty());
}

TEST_F(CalendarFoldersTest, lineBreaksWithinAName_areBlanks) {
    put("A/cal/displayname", "one\u2028two\u2029three\u0085four\nfive");
    EXPECT_THAT(titles(), ElementsAre("one two three four five"));
}

TEST_F(CalendarFoldersTest, whatShapesTheLastLetterOfAName_isKept) {
    put("A/cal/displayname", "Tea \u2615\uFE0F\n");
    EXPECT_THAT(titles(), ElementsAre("Tea \u2615\uFE0F"));
}

TEST_F(CalendarFoldersTest, calendarWithAMadeUpName_isCalledLikeItsAccount) {
    const std::string unnamed = "BEGIN:VCALENDAR\nEND:VCALENDAR\n";
    put("Home/3f2504e0-4F89-11D3-9A0C-0305E82C3301/event.ics", "");
    put("Work/00112233445566778899aabbccddeeff.ics", unnamed);
    put("caf\xE9/0123456789ABCDEF/displayname", "\n");
    EXPECT_THAT(titles(), ElementsAre("Home", "Work", "caf\\xE9"));
    EXPECT_THAT(identifiers(), testing::Contains("Home/3f2504e0-4F89-11D3-9A0C-0305E82C3301"));
    put("Home/3f2504e0-4F89-11D3-9A0C-0305E82C3301/displayname", "Family");
    EXPECT_THAT(titles(), testing::Contains("Family"));
}

TEST_F(CalendarFoldersTest, nameThatOnlyResemblesAMadeUpOne_isAName) {
    const std::vector<std::string> names{"0123456789ABCDE", "3F2504E0-4F89-11D3-9A0C-0305E82C330",
                                         "3F2504E0-4F89-11D3-9A0C-0305E82C3301 x",
                                         "3F2504E0-4F89-11D3-9A0C00305E82C3301", "DEADBEEFDEADBEEFG"};
    for (const std::string& name : names) put("A/" + name + "/event.ics", "");
    EXPECT_THAT(titles(), testing::UnorderedElementsAreArray(names));
}

TEST_F(CalendarFoldersTest, calendarWithoutAColour_hasOneThatStays) {
    put("A/one/displayname", "One");
    put("A/two/displayname", "Two");
    const auto calendars = source.calendars();
    EXPECT_EQ(CalendarFolders(directory.path(), Missing::IsAFault).calendars(), calendars);
    put("A/one/displayname", "Renamed");
    EXPECT_EQ(source.calendars().at(0).colour, calendars.at(0).colour);
    EXPECT_THAT(phone.log->lines(), IsEmpty());
}

TEST_F(CalendarFoldersTest, badColour_isLoggedAndCountsAsNone) {
    put("A/one/displayname", "One");
    const auto colour = source.calendars().at(0).colour;
    put("A/one/color", "loud");
    EXPECT_EQ(source.calendars().at(0).colour, colour);
    EXPECT_THAT(phone.log->lines(),
                ElementsAre("The colour \"loud\" in \"" + (directory / "A/one/color") + "\" is none."));
}

TEST_F(CalendarFoldersTest, badColours_areLoggedOnlyWhereNoneIsGood) {
    put("A/good.ics", "BEGIN:VCALENDAR\nX-APPLE-CALENDAR-COLOR:loud\nCOLOR:teal\nEND:VCALENDAR\n");
    EXPECT_EQ(source.calendars().at(0).colour, 0x008080U);
    EXPECT_THAT(phone.log->lines(), IsEmpty());
    put("A/none.ics", "BEGIN:VCALENDAR\nX-APPLE-CALENDAR-COLOR:loud\nCOLOR:shrill\nEND:VCALENDAR\n");
    EXPECT_EQ(source.calendars().size(), 2U);
    EXPECT_THAT(phone.log->lines(),
                ElementsAre("The colour \"loud\" in \"" + (directory / "A/none.ics") + "\" is none."));
}

TEST_F(CalendarFoldersTest, brokenFile_isLeftOutAndLoggedOnceUntilItChanges) {
    put("A/bad.ics", "nonsense");
    put("A/good.ics", named("Good"));
    EXPECT_THAT(titles(), ElementsAre("Good"));
    EXPECT_THAT(titles(), ElementsAre("Good"));
    const std::string line =
        "The calendar \"" + (directory / "A/bad.ics") + "\" does not begin with BEGIN:VCALENDAR.";
    EXPECT_THAT(phone.log->lines(), ElementsAre(line));
    put("A/bad.ics", "other nonsense");
    titles();
    EXPECT_THAT(phone.log->lines(), ElementsAre(line, line));
    put("A/bad.ics", "BEGIN:VCALENDAR\nand nonsense");
    EXPECT_THAT(titles(), ElementsAre("Good"));
    EXPECT_THAT(phone.log->lines(), ElementsAre(line, line,
                                                "The calendar \"" + (directory / "A/bad.ics") +
                                                    "\" is no iCalendar file: its line 2 is no property."));
    put("A/bad.ics", named("Mended"));
    EXPECT_THAT(titles(), ElementsAre("Mended", "Good"));
    EXPECT_EQ(phone.log->lines().size(), 3U);
}

TEST_F(CalendarFoldersTest, fileOfAnySize_isReadOnlyAtItsHead) {
    put("A/huge.ics", named("Huge"));
    // A hole of far more than there is memory for.
    fs::resize_file(directory / "A/huge.ics", std::uintmax_t{1} << 40);
    std::ofstream(directory / "A/huge.ics", std::ios::app) << "\nEND:VCALENDAR\n";
    std::string many = "BEGIN:VCALENDAR\r\nNAME:Many\r\n";
    for (int i = 0; i < 10'000; ++i) many += "BEGIN:VEVENT\r\nSUMMARY:event\r\nEND:VEVENT\r\n";
    put("A/many.ics", many + "END:VCALENDAR\r\n\r\n");
    put("A/torn.ics", many);
    EXPECT_THAT(titles(), ElementsAre("Huge", "Many"));
    EXPECT_THAT(phone.log->lines(), ElementsAre("The calendar \"" + (directory / "A/torn.ics") +
                                                "\" is cut short: it does not end with END:VCALENDAR."));
}

TEST_F(CalendarFoldersTest, fileThatWasCutShort_isLeftOutAndLoggedOnceUntilItIsWhole) {
    put("A/torn.ics", "BEGIN:VCALENDAR\r\n");
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_THAT(titles(), IsEmpty());
    const std::string line = "The calendar \"" + (directory / "A/torn.ics") +
                             "\" is cut short: it does not end with END:VCALENDAR.";
    EXPECT_THAT(phone.log->lines(), ElementsAre(line));
    put("A/torn.ics", "BEGIN:VCALENDAR\r\nNAME:Torn\r\nBEGIN:VEVENT\r\nSUMM");
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), ElementsAre(line, line));
    put("A/torn.ics", named("Whole"));
    EXPECT_THAT(titles(), ElementsAre("Whole"));
    EXPECT_EQ(phone.log->lines().size(), 2U);
}

TEST_F(CalendarFoldersTest, hiddenAndForeignThings_arePassedOver) {
    put(".hidden/cal/displayname", "x");
    put("loose.ics", named("x"));
    put("A/.hidden/displayname", "x");
    put("A/.hidden.ics", named("x"));
    put("A/notes.txt", "x");
    put("A/UPPER.ICS", named("Upper"));
    EXPECT_THAT(titles(), ElementsAre("Upper"));
    EXPECT_THAT(phone.log->lines(), IsEmpty());
}

TEST_F(CalendarFoldersTest, symbolicLinks_areFollowedButNotInCircles) {
    const testing_support::TemporaryDirectory elsewhere;
    writeText(elsewhere / "cal/displayname", "Elsewhere");
    put("A/cal/displayname", "Here");
    fs::create_directory_symlink(elsewhere.path(), directory / "B");
    fs::create_directory_symlink("..", directory / "A/up");
    fs::create_directory_symlink(".", directory / "A/self");
    fs::create_directory_symlink(".", directory / "self");
    fs::create_directory_symlink("loop", directory / "A/loop");
    fs::create_symlink("loop.ics", directory / "A/loop.ics");
    EXPECT_THAT(titles(), ElementsAre("Here", "Elsewhere"));
    EXPECT_THAT(phone.log->lines(), ElementsAre(HasSubstr("loop.ics")));
}

TEST_F(CalendarFoldersTest, pipes_areNotWaitedFor) {
    put("A/cal/event.ics", "");
    ASSERT_EQ(mkfifo((directory / "A/pipe.ics").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo((directory / "A/cal/displayname").c_str(), 0600), 0);
    EXPECT_THAT(titles(), ElementsAre("cal"));
    EXPECT_THAT(phone.log->lines(), ElementsAre(HasSubstr("displayname"), HasSubstr("pipe.ics")));
}

TEST_F(CalendarFoldersTest, namesThatAreNoUTF8_areEscapedAndStayApart) {
    put("caf\xE9/\xFF/displayname", "\xFE");
    put("caf\xE8/\xFF/displayname", "a\tb");
    EXPECT_THAT(source.calendars(),
                ElementsAre(testing::FieldsAre("caf\\xE8/\\xFF", "a b", "caf\\xE8", testing::_),
                            testing::FieldsAre("caf\\xE9/\\xFF", "\\xFE", "caf\\xE9", testing::_)));
}

TEST_F(CalendarFoldersTest, displayNameTooLongForOne_isLoggedAndCountsAsNone) {
    put("A/cal/displayname", std::string(5000, 'x'));
    EXPECT_THAT(titles(), ElementsAre("cal"));
    EXPECT_THAT(phone.log->lines(), ElementsAre(HasSubstr("is too long for one line")));
}

TEST_F(CalendarFoldersTest, directoryThatIsMissing_hasNoCalendars) {
    CalendarFolders own(directory / "nowhere", Missing::IsEmpty);
    EXPECT_THAT(own.calendars(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), IsEmpty());
}

TEST_F(CalendarFoldersTest, directoryThatWasGivenAndDisappears_isLoggedOnce) {
    put("A/cal/displayname", "Here");
    EXPECT_THAT(titles(), ElementsAre("Here"));
    fs::remove_all(directory.path());
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), ElementsAre("The calendars directory \"" + directory.path().string() +
                                                "\" cannot be used: No such file or directory."));
    put("A/cal/displayname", "Back");
    EXPECT_THAT(titles(), ElementsAre("Back"));
}

TEST_F(CalendarFoldersTest, directoryThatCannotBeListed_isLogged) {
    put("file", "");
    EXPECT_THAT(CalendarFolders(directory / "file", Missing::IsAFault).calendars(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), ElementsAre("The calendars in \"" + (directory / "file") +
                                                "\" could not be listed: Not a directory."));
}

/// Nothing is unreadable for root: for as long as this lives, the process has a plain user's rights.
class WithoutRootRights {
  public:
    WithoutRootRights() {
        if (wasRoot_ && seteuid(nobody) != 0) throw std::runtime_error("the rights cannot be given up");
    }
    ~WithoutRootRights() {
        if (wasRoot_ && seteuid(0) != 0) std::abort();
    }
    WithoutRootRights(const WithoutRootRights&) = delete;
    WithoutRootRights& operator=(const WithoutRootRights&) = delete;

  private:
    static constexpr uid_t nobody = 65534;
    bool wasRoot_ = geteuid() == 0;
};

TEST_F(CalendarFoldersTest, unreadableAccount_isLoggedAndTheOthersStay) {
    put("A/cal/displayname", "x");
    put("B/cal/displayname", "B");
    constexpr auto forEveryone =
        fs::perms::group_read | fs::perms::group_exec | fs::perms::others_read | fs::perms::others_exec;
    fs::permissions(directory.path(), forEveryone, fs::perm_options::add);
    fs::permissions(directory / "A", fs::perms::none);
    {
        const WithoutRootRights user;
        EXPECT_THAT(titles(), ElementsAre("B"));
    }
    EXPECT_THAT(phone.log->lines(), ElementsAre(HasSubstr("Permission denied")));
    fs::permissions(directory / "A", fs::perms::owner_all);
}

}  // namespace
