// SPDX-License-Identifier: MIT
#include "conditions/calendars/QXCalendarTableCell.h"
#include "conditions/calendars/QuietrixCalendarsController.h"
#include "platform/eventkit/EKCalendar.h"
#include "profile/model/QXEventManager.h"
#include "shell/base/NotificationNames.h"
#include "tests/conditions/PickerFixture.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::CalendarEntry;
using platform::Dictionary;
using platform::EKCalendar;
using platform::PSCellType;
using platform::UIColor;

constexpr const char* allDayRow = "allDayEventsIgnored";

class CalendarsPicker : public ListPickerFixture<QuietrixCalendarsController> {
  protected:
    CalendarsPicker() {
        phone_.calendars->entries = {{"w2", "Reviews", "work", 0x0000FF},
                                     {"i1", "Private", "iCloud", 0x123456},
                                     {"h1", "Family", "Home", 0xFF0000},
                                     {"w1", "Meetings", "work", 0x00FF00}};
    }
    void openPicker() {
        open(Dictionary{{"calendars", QXEventManager::sharedManager()->groupedCalendars()}});
    }
    std::string chosen() {
        return platform::Value(profile_->valueForKey("calendarIdentifiers")).description();
    }
    using List = std::vector<std::string>;
};

TEST_F(CalendarsPicker, rows_areTheSwitchAndTheGroupsInTheOrderOfTheirTitles) {
    openPicker();
    EXPECT_EQ("Ignore All Day Events, Home, Family, iCloud, Private, work, Reviews, Meetings, -",
              doubles::rowNames(*screen_));
}

TEST_F(CalendarsPicker, switchRow_isAsDeclared) {
    openPicker();
    const auto row = ownRows().at(0);
    EXPECT_EQ(PSCellType::Switch, row->cellType());
    EXPECT_EQ(allDayRow, row->identifier());
    EXPECT_EQ("setPreferenceValue:specifier:", row->setter().selector());
    EXPECT_EQ("readPreferenceValue:", row->getter().selector());
    EXPECT_EQ(screen_, row->target());
    EXPECT_EQ("QXSwitchCell", row->propertyForKey("cellClass").stringOr());
    EXPECT_EQ(platform::Value(true), row->propertyForKey("default"));
    EXPECT_EQ("When turned on Quietrix Go ignores the 'all day' events for the below selected calendars.",
              row->propertyForKey("footerText").stringOr());
}

TEST_F(CalendarsPicker, switchRow_isInThePhonesLanguage) {
    phone_.facts->languages = {"de"};
    openPicker();
    const auto row = ownRows().at(0);
    EXPECT_EQ("Ganztägige Ereignisse ignorieren", row->name());
    EXPECT_EQ(
        "Wenn diese Option aktiviert ist, ignoriert Quietrix Go ganztägige Ereignisse in den unten "
        "ausgewählten Kalendern.",
        row->propertyForKey("footerText").stringOr());
}

TEST_F(CalendarsPicker, calendarRow_isAsDeclared) {
    openPicker();
    const auto row = rowOf("i1");
    EXPECT_EQ("Private", row->name());
    EXPECT_EQ(PSCellType::Link, row->cellType());
    EXPECT_FALSE(row->setter());
    EXPECT_FALSE(row->getter());
    EXPECT_EQ(nullptr, row->target());
    EXPECT_EQ("", row->detailControllerClass());
    EXPECT_EQ("QXCalendarTableCell", row->propertyForKey("cellClass").stringOr());
    const auto swatch = row->propertyForKey("iconImage").objectAs<platform::UIImage>();
    ASSERT_NE(nullptr, swatch);
    EXPECT_TRUE(
        required(swatch->fillColor())
            ->isEqual(*UIColor::colorWithRed_green_blue_alpha(0x12 / 255.0, 0x34 / 255.0, 0x56 / 255.0, 1)));
    EXPECT_EQ(10.0, swatch->cornerRadius());
    const auto calendar = row->userInfo().objectAs<EKCalendar>();
    ASSERT_NE(nullptr, calendar);
    EXPECT_EQ("i1", calendar->calendarIdentifier());
    EXPECT_EQ(platform::UITableViewCellStyleDefault, cellOf("i1")->style());
}

TEST_F(CalendarsPicker, groupTitles_areOrderedWhateverTheirCase) {
    phone_.calendars->entries = {
        {"1", "A", "Zoo", 0}, {"2", "B", "apple", 0}, {"3", "C", "Émile", 0}, {"4", "D", "émilie", 0}};
    openPicker();
    EXPECT_EQ("Ignore All Day Events, apple, B, Zoo, A, Émile, C, émilie, D, -", doubles::rowNames(*screen_));
}

TEST_F(CalendarsPicker, groupTitlesThatDifferInCaseOnly_keepOneOrder) {
    phone_.calendars->entries = {{"1", "A", "home", 0}, {"2", "B", "Home", 0}, {"3", "C", "HOME", 0}};
    openPicker();
    EXPECT_EQ("Ignore All Day Events, HOME, C, Home, B, home, A, -", doubles::rowNames(*screen_));
}

TEST_F(CalendarsPicker, noCalendars_leaveTheSwitchRowAlone) {
    phone_.calendars->entries.clear();
    openPicker();
    EXPECT_EQ("Ignore All Day Events, -", doubles::rowNames(*screen_));
}

TEST_F(CalendarsPicker, tapped_addsAtTheEndAndTappedAgainRemoves) {
    profile_->setCalendarIdentifiers({"w1"});
    openPicker();
    EXPECT_TRUE(isChecked("w1"));
    EXPECT_FALSE(isChecked("h1"));
    tap("h1");
    EXPECT_EQ((List{"w1", "h1"}), profile_->calendarIdentifiers());
    EXPECT_TRUE(isChecked("h1"));
    EXPECT_EQ(std::nullopt, screen_->table()->indexPathForSelectedRow());
    tap("w1");
    EXPECT_EQ((List{"h1"}), profile_->calendarIdentifiers());
    EXPECT_FALSE(isChecked("w1"));
    tap("w1");
    EXPECT_EQ((List{"h1", "w1"}), profile_->calendarIdentifiers());
}

TEST_F(CalendarsPicker, eachTap_isOneStoreUpdate) {
    openPicker();
    tap("h1");
    EXPECT_EQ(1U, storeCalls());
    EXPECT_EQ((List{"h1"}), required(stored())->calendarIdentifiers());
}

TEST_F(CalendarsPicker, newProfile_isNotStored) {
    profile_->setNewProfile(true);
    openPicker();
    tap("h1");
    ASSERT_TRUE(cellOf(allDayRow)->userMovedControl(!profile_->allDayEventsIgnored()));
    EXPECT_EQ(0U, storeCalls());
    EXPECT_EQ((List{"h1"}), profile_->calendarIdentifiers());
}

TEST_F(CalendarsPicker, switchMoved_storesTheFlag) {
    openPicker();
    const bool before = profile_->allDayEventsIgnored();
    EXPECT_EQ(platform::Value(before), cellOf(allDayRow)->controlValue());
    ASSERT_TRUE(cellOf(allDayRow)->userMovedControl(!before));
    EXPECT_EQ(1U, storeCalls());
    EXPECT_EQ(!before, required(stored())->allDayEventsIgnored());
    EXPECT_TRUE(required(stored())->calendarIdentifiers().empty());
}

TEST_F(CalendarsPicker, switch_opensAsTheProfileSays) {
    for (const bool ignored : {false, true}) {
        profile_ = QXProfile::defaultProfile();
        profile_->setAllDayEventsIgnored(ignored);
        openPicker();
        EXPECT_EQ(platform::Value(ignored), cellOf(allDayRow)->controlValue());
    }
}

TEST_F(CalendarsPicker, switchRowsBodyTapped_isTickedLikeACalendar) {
    openPicker();
    const bool before = profile_->allDayEventsIgnored();
    tap(allDayRow);
    EXPECT_EQ((List{allDayRow}), profile_->calendarIdentifiers());
    EXPECT_TRUE(isChecked(allDayRow));
    EXPECT_EQ(before, profile_->allDayEventsIgnored());
    tap(allDayRow);
    EXPECT_TRUE(profile_->calendarIdentifiers().empty());
    EXPECT_FALSE(isChecked(allDayRow));
}

TEST_F(CalendarsPicker, cells_areGreyFromElevenOnAndInTheProductsColourBefore) {
    openPicker();
    EXPECT_TRUE(required(cellOf("h1")->tintColor())->isEqual(*UIColor::darkGrayColor()));
    phone_.facts->version = "10.3";
    screen_->reloadSpecifiers();
    ASSERT_NE(nullptr, required(cellOf("h1")->tintColor())->patternImage());
    EXPECT_EQ("nav", required(cellOf("h1")->tintColor())->patternImage()->name());
}

TEST_F(CalendarsPicker, eventStatusRow_wouldShowTheStatusAndOpenItsScreen) {
    profile_->setApplyProfileEventStatus(2);
    openPicker();
    const auto row = platform::PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        "Status", nullptr, {}, {}, "QuietrixEventStatusController", PSCellType::Link, "");
    row->setIdentifier("applyProfileEventStatus");
    screen_->insertSpecifier_atIndex_animated(row, 1, false);
    const auto cell = cellOf("applyProfileEventStatus");
    EXPECT_EQ("Tentative", cell->detailTextLabel()->text());
    EXPECT_TRUE(required(cell->detailTextLabel()->textColor())->isEqual(*UIColor::darkGrayColor()));
    EXPECT_EQ(platform::UITableViewCellAccessoryDisclosureIndicator, cell->accessoryType());
    tap("applyProfileEventStatus");
    EXPECT_NE(screen_, navigation_->topViewController());
    EXPECT_TRUE(profile_->calendarIdentifiers().empty());
}

TEST_F(CalendarsPicker, failedSave_showsTheErrorAndKeepsTheTick) {
    openPicker();
    failWrites();
    tap("h1");
    phone_.drain();
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Error", alert()->title());
    EXPECT_TRUE(isChecked("h1"));
    EXPECT_EQ((List{"h1"}), profile_->calendarIdentifiers());
}

TEST_F(CalendarsPicker, failureAfterTheScreenIsGone_isNotShownAndHoldsNothing) {
    openPicker();
    failWrites();
    tap("h1");
    const std::weak_ptr<QuietrixCalendarsController> screen = screen_;
    screen_.reset();
    navigation_->popViewControllerAnimated(false);
    EXPECT_TRUE(screen.expired());
    phone_.drain();
    EXPECT_EQ(nullptr, alert());
}

TEST_F(CalendarsPicker, appliedStateChanged_takesProfileAndCalendarsAnewWithoutRebuilding) {
    openPicker();
    const auto rows = *screen_->specifiers();
    storeElsewhere("calendarIdentifiers", platform::Array{"i1"});
    phone_.calendars->entries.push_back({"n1", "New", "Zoo", 0});
    post(ProfileAppliedStateChangedNotification);
    EXPECT_NE(profile_, shown());
    EXPECT_EQ((List{"i1"}), required(shown())->calendarIdentifiers());
    const auto groups = row_->userInfo()["calendars"];
    ASSERT_NE(nullptr, groups.dictionary());
    EXPECT_TRUE(groups.dictionary()->contains("Zoo"));
    EXPECT_EQ(2U, required(row_->userInfo().dictionary())->size());
    EXPECT_EQ(rows, *screen_->specifiers());
}

TEST_F(CalendarsPicker, appliedStateChanged_leavesANewProfileItsChoices) {
    profile_->setNewProfile(true);
    openPicker();
    tap("h1");
    phone_.calendars->entries.push_back({"n1", "New", "Zoo", 0});
    post(ProfileAppliedStateChangedNotification);
    EXPECT_EQ(profile_, shown());
    EXPECT_TRUE(required(row_->userInfo()["calendars"].dictionary())->contains("Zoo"));
    EXPECT_EQ(2U, required(row_->userInfo().dictionary())->size());
    tap("w1");
    EXPECT_EQ((List{"h1", "w1"}), profile_->calendarIdentifiers());
    EXPECT_TRUE(isChecked("w1"));
    EXPECT_EQ(0U, storeCalls());
    EXPECT_EQ(nullptr, alert());
}

TEST_F(CalendarsPicker, appliedStateChanged_withoutAProfileStaysWithoutOne) {
    openPicker();
    row_->setUserInfo(nullptr);
    post(ProfileAppliedStateChangedNotification);
    EXPECT_EQ(nullptr, shown());
    EXPECT_EQ(2U, required(row_->userInfo().dictionary())->size());
}

TEST_F(CalendarsPicker, profileGone_isReportedAndLeavesTheScreenItsRecord) {
    openPicker();
    deleteElsewhere();
    post(ProfileAppliedStateChangedNotification);
    EXPECT_EQ(profile_, shown());
    tap("h1");
    phone_.drain();
    EXPECT_NE(nullptr, alert());
    EXPECT_EQ((List{"h1"}), profile_->calendarIdentifiers());
    EXPECT_EQ(nullptr, stored());
}

TEST_F(CalendarsPicker, chrome_isTheProducts) {
    openPicker();
    expectProductsChrome();
}

TEST_F(CalendarsPicker, closed_isNotKeptAlive) {
    openPicker();
    tap("h1");
    EXPECT_TRUE(closesForGood());
    post(ProfileAppliedStateChangedNotification);
}

TEST(QXCalendarTableCell, ofAnyStyle_isOfTheDefaultOne) {
    const doubles::Phone phone;
    const auto row = platform::PSSpecifier::emptyGroupSpecifier();
    const QXCalendarTableCell styled(platform::UITableViewCellStyleValue1, "reuse", row);
    EXPECT_EQ(platform::UITableViewCellStyleDefault, styled.style());
    EXPECT_EQ("reuse", styled.reuseIdentifier());
    EXPECT_EQ(row, styled.specifier());
    const QXCalendarTableCell alone(row);
    EXPECT_EQ(platform::UITableViewCellStyleDefault, alone.style());
    EXPECT_EQ("", alone.reuseIdentifier());
}

}  // namespace
}  // namespace quietrix
