// SPDX-License-Identifier: MIT
#include "profile/hours/QXDateRangePane.h"
#include "profile/model/QXUtils.h"
#include "shell/base/Localization.h"
#include "tests/profile/hours/HoursFixture.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::Rect;
using platform::UIColor;

class HoursPane : public HoursFixture {};

TEST_F(HoursPane, built_isAPickerForTimesAndATableThatDoesNotScroll) {
    openStored("9:00 AM", "5:00 PM");
    const auto& picker = pane_->datePicker();
    EXPECT_EQ(platform::UIDatePickerModeTime, picker->datePickerMode());
    EXPECT_EQ(0, picker->tag());
    EXPECT_EQ(platform::UITableViewStyleGrouped, table_->style());
    EXPECT_EQ(44, table_->rowHeight());
    EXPECT_FALSE(table_->isScrollEnabled());
    EXPECT_TRUE(table_->showsVerticalScrollIndicator());
    EXPECT_TRUE(table_->isUserInteractionEnabled());
    EXPECT_FALSE(table_->bounces());
    EXPECT_EQ(1, pane_->numberOfSectionsInTableView(table_));
    EXPECT_EQ(2, table_->numberOfRowsInSection(0));
}

TEST_F(HoursPane, laidOut_putsThePickerBelowAndTheRowsInTheMiddleOfTheRest) {
    openStored("9:00 AM", "5:00 PM");
    table_->setContentInset({1, 2, 3, 4});
    pane_->setFrame({0, 0, 320, 568});
    pane_->layoutIfNeeded();
    EXPECT_EQ((Rect{0, 568 - 216, 320, 216}), pane_->datePicker()->frame());
    EXPECT_EQ((Rect{0, 20, 320, 568 - 216 - 20}), table_->frame());
    EXPECT_EQ((platform::Insets{(568 - 216 - 20 - 130) / 2.0, 2, 3, 4}), table_->contentInset());
}

TEST_F(HoursPane, everyLayout_selectsFromWhileThePickerKeepsItsRow) {
    openStored("9:00 AM", "5:00 PM");
    EXPECT_EQ((platform::IndexPath{0, 0}), table_->indexPathForSelectedRow());
    selectRow(1);
    pane_->setNeedsLayout();
    pane_->layoutIfNeeded();
    EXPECT_EQ((platform::IndexPath{0, 0}), table_->indexPathForSelectedRow());
    EXPECT_EQ(1, pane_->datePicker()->tag());
}

TEST_F(HoursPane, rows_showLabelAndStoredTimeCentredInBlue) {
    openStored("9:05 AM", "12:30 PM");
    EXPECT_EQ("From 9:05 AM", rowText(0));
    EXPECT_EQ("To 12:30 PM", rowText(1));
    for (const std::int64_t row : {0, 1}) {
        const auto& label = hourCell(row)->textLabel();
        EXPECT_EQ(platform::NSTextAlignmentCenter, label->textAlignment());
        EXPECT_TRUE(required(label->textColor())
                        ->isEqual(*UIColor::colorWithRed_green_blue_alpha(0, 0.478431, 1.0, 1.0)));
        EXPECT_EQ("dateCell", hourCell(row)->reuseIdentifier());
    }
}

TEST_F(HoursPane, opened_showsTheFromTime) {
    openStored("9:05 AM", "5:00 PM");
    EXPECT_EQ("9:05 AM", pickedTime());
}

TEST_F(HoursPane, selectingTo_movesThePickerToTheStoredTimeAndSavesNothing) {
    openStored("9:05 AM", "5:00 PM");
    selectRow(1);
    EXPECT_EQ("5:00 PM", pickedTime());
    EXPECT_EQ(1, pane_->datePicker()->tag());
    EXPECT_EQ(0U, storeCalls());
    selectRow(0);
    EXPECT_EQ("9:05 AM", pickedTime());
}

TEST_F(HoursPane, formatterLeftWithAnotherPattern_isSetForEachUse) {
    openStored("9:05 AM", "5:00 PM");
    QXUtils::dateFormatter().setDateFormat("yyyy");
    selectRow(1);
    EXPECT_EQ("5:00 PM", pickedTime());
    QXUtils::dateFormatter().setDateFormat("yyyy");
    pick("6:15 PM");
    EXPECT_EQ("6:15 PM", profile_->endTime());
}

TEST_F(HoursPane, unreadableStoredTime_leavesThePickerWithoutOne) {
    openStored("soon", "5:00 PM");
    EXPECT_EQ(std::nullopt, pane_->datePicker()->date());
    EXPECT_EQ("From soon", rowText(0));
    EXPECT_EQ(nullptr, alert());
    pick("8:00 AM");
    EXPECT_EQ("8:00 AM", profile_->startTime());
}

TEST_F(HoursPane, toEqualToFrom_isRefusedWithTheAlert) {
    openStored("9:00 AM", "5:00 PM");
    selectRow(1);
    pick("9:00 AM");
    phone_.drain();
    const auto shown = alert();
    ASSERT_NE(nullptr, shown);
    EXPECT_EQ("Error", shown->title());
    EXPECT_EQ("Invalid configuration, 'To' time cannot be less than 'From' time.", shown->message());
    EXPECT_EQ(platform::UIAlertControllerStyleAlert, shown->preferredStyle());
    ASSERT_EQ(1U, shown->actions().size());
    EXPECT_EQ("Close", shown->actions()[0].title);
    EXPECT_EQ(platform::UIAlertActionStyleCancel, shown->actions()[0].style);
    EXPECT_EQ("5:00 PM", profile_->endTime());
    EXPECT_EQ("9:00 AM", pickedTime()) << "the picker stays where the user put it";
    EXPECT_EQ("To 5:00 PM", rowText(1));
    EXPECT_EQ(0U, storeCalls());
    shown->choose(0);
    EXPECT_EQ(nullptr, alert());
    EXPECT_TRUE(screen_->isVisible());
}

TEST_F(HoursPane, fromNotBeforeTo_isRefusedAndNotSaved) {
    openStored("9:00 AM", "5:00 PM");
    for (const auto* time : {"5:00 PM", "6:00 PM"}) {
        pick(time);
        phone_.drain();
        ASSERT_NE(nullptr, alert()) << time;
        EXPECT_EQ("9:00 AM", profile_->startTime()) << time;
        EXPECT_EQ("From 9:00 AM", rowText(0)) << time;
        EXPECT_EQ(0U, storeCalls()) << time;
        alert()->choose(0);
    }
}

TEST_F(HoursPane, refusal_isInThePhonesLanguage) {
    phone_.facts->languages = {"de"};
    openStored("9:00 AM", "5:00 PM");
    pick("6:00 PM");
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Fehler", alert()->title());
    EXPECT_EQ(localized("Invalid configuration, 'To' time cannot be less than 'From' time."),
              alert()->message());
    EXPECT_NE("Invalid configuration, 'To' time cannot be less than 'From' time.", alert()->message());
    EXPECT_EQ("Schließen", alert()->actions().at(0).title);
}

TEST_F(HoursPane, refusal_doesNotKeepItsScreen) {
    openStored("9:00 AM", "5:00 PM");
    pick("6:00 PM");
    const auto refusal = alert();
    ASSERT_NE(nullptr, refusal);
    pane_ = nullptr;
    table_ = nullptr;
    EXPECT_TRUE(closesForGood());
    refusal->choose(0);
}

TEST_F(HoursPane, periodOverMidnight_isRefused) {
    openStored("11:00 PM", "11:30 PM");
    selectRow(1);
    pick("1:00 AM");
    EXPECT_NE(nullptr, alert());
    EXPECT_EQ("11:30 PM", profile_->endTime());
}

TEST_F(HoursPane, earlierTimeOfALaterDay_isRefusedAsTo) {
    openStored("9:00 AM", "5:00 PM");
    selectRow(1);
    pickOnAnotherDay(8, 0);
    EXPECT_NE(nullptr, alert());
    EXPECT_EQ("5:00 PM", profile_->endTime());
}

TEST_F(HoursPane, earlierTimeOfALaterDay_isAcceptedAsFrom) {
    openStored("9:00 AM", "5:00 PM");
    pickOnAnotherDay(16, 59);
    EXPECT_EQ(nullptr, alert());
    EXPECT_EQ("4:59 PM", profile_->startTime());
}

TEST_F(HoursPane, unreadableTo_countsAsMidnightSoThatEachFromIsRefused) {
    openStored("9:00 AM", "soon");
    for (const auto* time : {"12:00 AM", "12:01 AM", "11:59 PM"}) {
        pick(time);
        ASSERT_NE(nullptr, alert()) << time;
        alert()->choose(0);
        EXPECT_EQ("9:00 AM", profile_->startTime()) << time;
    }
}

TEST_F(HoursPane, unreadableFrom_countsAsMidnightSoThatEachLaterToIsAccepted) {
    openStored("soon", "5:00 PM");
    selectRow(1);
    pick("12:00 AM");
    ASSERT_NE(nullptr, alert());
    alert()->choose(0);
    EXPECT_EQ("5:00 PM", profile_->endTime());
    pick("12:01 AM");
    EXPECT_EQ(nullptr, alert());
    EXPECT_EQ("12:01 AM", profile_->endTime());
}

TEST_F(HoursPane, fromOneMinuteBeforeTo_isStoredAndSavedOnce) {
    openStored("9:00 AM", "5:00 PM");
    pick("4:59 PM");
    EXPECT_EQ("4:59 PM", profile_->startTime());
    phone_.drain();
    EXPECT_EQ(nullptr, alert());
    EXPECT_EQ(1U, storeCalls());
    EXPECT_EQ("4:59 PM", required(stored())->startTime());
}

TEST_F(HoursPane, acceptedTime_isShownInItsRowWhichStaysSelected) {
    openStored("9:00 AM", "5:00 PM");
    selectRow(1);
    EXPECT_EQ("To 5:00 PM", rowText(1));
    pick("6:00 PM");
    EXPECT_EQ("To 6:00 PM", rowText(1));
    EXPECT_EQ((platform::IndexPath{0, 1}), table_->indexPathForSelectedRow());
}

TEST_F(HoursPane, inAnotherLanguage_keepsTheTimesAsTheyAreStored) {
    phone_.facts->languages = {"de"};
    openStored("9:00 AM", "5:00 PM");
    pick("10:15 AM");
    EXPECT_EQ("10:15 AM", profile_->startTime());
    EXPECT_TRUE(rowText(0).ends_with(" 10:15 AM"));
    EXPECT_NE("From 10:15 AM", rowText(0));
}

}  // namespace
}  // namespace quietrix
