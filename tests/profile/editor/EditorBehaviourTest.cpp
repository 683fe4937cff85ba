// SPDX-License-Identifier: MIT
#include <ranges>

#include "shell/base/NotificationNames.h"
#include "tests/profile/editor/EditorFixture.h"
#include "tests/profile/editor/WrittenRows.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::Value;

class Editor : public EditorFixture {};

TEST_F(Editor, values_areTheRecordsUnderTheRowsIdentifier) {
    profile_->setRingerVolume(0.25);
    profile_->setCalendarIdentifiers({"one", "two"});
    open();
    EXPECT_EQ(Value(true), screen_->readPreferenceValue(rowOf("playAlert")));
    EXPECT_EQ(Value(0.25), screen_->readPreferenceValue(rowOf("ringerVolume")));
    EXPECT_EQ(Value(platform::Array{"one", "two"}),
              screen_->readPreferenceValue(rowOf("calendarIdentifiers")));
    EXPECT_EQ("Work", cellOf("title")->controlValue().stringOr());
}

TEST_F(Editor, changedValue_isSavedOnceAndChangesNoRows) {
    open();
    const std::vector<std::pair<std::string, Value>> changes{
        {"title", "Office"},    {"playBackVolume", 0.75}, {"ringerVolume", 0.5}, {"vibrate", true},
        {"vibrateAlert", true}, {"wakeUpScreen", true},   {"dnDEnabled", true},  {"showOnStatusBar", true}};
    for (const auto& [identifier, value] : changes) {
        const Value other = value.boolean() ? Value(!profile_->valueForKey(identifier).isTrue()) : value;
        move(identifier, other);
        EXPECT_EQ("update ok", happened()) << identifier;
        phone_.drain();
        EXPECT_EQ(other, required(stored())->valueForKey(identifier)) << identifier;
    }
}

TEST_F(Editor, emptyTitle_isAccepted) {
    open();
    move("title", "");
    phone_.drain();
    EXPECT_EQ("", required(stored())->title());
    EXPECT_EQ(nullptr, alert());
}

TEST_F(Editor, unknownIdentifier_isTheRecordsBusiness) {
    open();
    const auto row = rowOf("vibrate");
    row->setIdentifier("noSuchKey");
    phone_.takeEvents();
    screen_->setPreferenceValue_specifier(true, row);
    EXPECT_EQ("update ok", happened());
    EXPECT_TRUE(std::ranges::any_of(
        phone_.log->lines(), [](const auto& line) { return line.find("noSuchKey") != std::string::npos; }));
}

TEST_F(Editor, switchedOff_savesThenRemovesFromBelowUpToTheLastRow) {
    open();
    move("enabled", false);
    std::string expected = "update ok";
    int index = 23;
    const auto names = namesOfEnabledRows();
    for (const auto& name : std::views::reverse(names))
        expected += "; remove " + std::to_string(index--) + " " + name + " animated";
    EXPECT_EQ(expected, happened());
    EXPECT_EQ(5U, screen_->specifiers()->size());
    EXPECT_EQ(4, indexOf("CopyRightHeader"));
}

TEST_F(Editor, switchedOnAgain_insertsTheWholeSectionAfterEnable) {
    open();
    const auto before = doubles::rowNames(*screen_);
    move("enabled", false);
    move("enabled", true);
    std::string expected = "update ok";
    int index = 4;
    for (const auto& name : namesOfEnabledRows())
        expected += "; insert " + std::to_string(index++) + " " + name + " animated";
    EXPECT_EQ(expected, happened());
    EXPECT_EQ(before, doubles::rowNames(*screen_));
    EXPECT_EQ(24, indexOf("CopyRightHeader"));
}

TEST_F(Editor, allDayOn_takesTheHoursAndTheSliderBehindThem) {
    open();
    move("allDay", true);
    EXPECT_EQ("update ok; remove 6 Active Hours animated; remove 7 Playback Volume animated", happened());
    move("allDay", false);
    EXPECT_EQ("update ok; insert 6 Active Hours animated", happened());
    EXPECT_EQ(-1, indexOf("playBackVolume"));
    EXPECT_EQ("Active Hours", rowAt(6)->name());
    EXPECT_EQ("allDay", rowAt(5)->identifier());
    screen_->reloadSpecifiers();
    EXPECT_EQ(8, indexOf("playBackVolume"));
}

TEST_F(Editor, ringAlert_bringsAndTakesTheToneRowBehindIt) {
    open();
    move("playAlert", false);
    EXPECT_EQ("update ok; remove 13 Alert Tone animated", happened());
    move("playAlert", true);
    EXPECT_EQ("update ok; insert 13 Alert Tone animated", happened());
    EXPECT_EQ(indexOf("playAlert") + 1, indexOf("alertToneIdentifier"));
}

TEST_F(Editor, rebuilt_hasTheToneRowExactlyOnce) {
    open();
    screen_->reloadSpecifiers();
    const auto& rows = *screen_->specifiers();
    EXPECT_EQ(1, std::ranges::count_if(
                     rows, [](const auto& row) { return row->identifier() == "alertToneIdentifier"; }));
    EXPECT_EQ(13, indexOf("alertToneIdentifier"));
    EXPECT_EQ("", happened());
}

/// An editor whose alert section lacks the tone's row, as a subclass's could.
class ToneForgettingEditor : public QuietrixProflePreferencesController {
  public:
    platform::SpecifierArray specifiers() override {
        const bool fresh = !specifiers_ || specifiers_->empty();
        auto list = QuietrixProflePreferencesController::specifiers();
        if (fresh) {
            std::erase_if(*list, [](const auto& row) { return row->identifier() == "alertToneIdentifier"; });
        }
        return list;
    }
};

TEST_F(Editor, rebuiltWithoutTheToneRow_addsItWithoutAnimation) {
    open(std::make_shared<ToneForgettingEditor>());
    screen_->reloadSpecifiers();
    EXPECT_EQ("insert 13 Alert Tone", happened());
}

TEST_F(Editor, silentedOperation_insertsAtTheTopForWantOfItsRow) {
    open();
    screen_->enableOrDisableProfileSilentedSpecifiers_animate(screen_->specifiers(), true);
    EXPECT_EQ("insert 0 Ringer Volume animated", happened());
}

TEST_F(Editor, failedSave_showsTheErrorAndKeepsTheValue) {
    open();
    failWrites();
    move("title", "Office");
    EXPECT_EQ("update failed", happened());
    phone_.drain();
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Error", alert()->title());
    ASSERT_EQ(1U, alert()->actions().size());
    EXPECT_EQ("Close", alert()->actions()[0].title);
    EXPECT_EQ("Office", profile_->title());
    EXPECT_EQ("Office", cellOf("title")->controlValue().stringOr());
    EXPECT_EQ("Office", screen_->title());
}

TEST_F(Editor, failedSaveOfARowsOwnScreen_showsTheKeptValueInTheRow) {
    open();
    failWrites();
    cellOf("alertToneIdentifier");
    tap("alertToneIdentifier");
    profile_->setAlertToneIdentifier("texttone:Bell");
    navigation_->popViewControllerAnimated(true);
    EXPECT_EQ("Bell", cellOf("alertToneIdentifier")->detailTextLabel()->text());
}

TEST_F(Editor, failureAfterTheScreenIsGone_isHeardByTheScreenAndThenFreesIt) {
    open();
    failWrites();
    move("title", "Office");
    const std::weak_ptr<QuietrixProflePreferencesController> screen = screen_;
    screen_.reset();
    navigation_->popViewControllerAnimated(false);
    EXPECT_FALSE(screen.expired()) << "the save holds the screen until the store has answered";
    phone_.drain();
    EXPECT_EQ(nullptr, alert()) << "nothing that is shown could present it";
    EXPECT_TRUE(screen.expired());
}

TEST_F(Editor, dataUpdated_savesAndTakesTheStoresRecord) {
    open();
    profile_->setStartTime("8:00 AM");
    phone_.takeEvents();
    post(ProfileDataUpdateNotification);
    EXPECT_EQ("update ok", happened());
    EXPECT_NE(profile_, screen_->profile());
    EXPECT_EQ("8:00 AM", required(screen_->profile())->startTime());
    EXPECT_EQ(screen_->profile(), row_->userInfo().objectAs<QXProfile>());
    EXPECT_EQ(screen_->profile(), rowOf("wifiNetworks")->userInfo()["profile"].objectAs<QXProfile>());
}

TEST_F(Editor, appliedStateChanged_takesTheStoresRecordAndSavesNothing) {
    open();
    storeElsewhere("title", "Renamed elsewhere");
    phone_.takeEvents();
    post(ProfileAppliedStateChangedNotification);
    EXPECT_EQ("", happened());
    EXPECT_EQ("Renamed elsewhere", screen_->title());
    EXPECT_EQ("Renamed elsewhere", cellOf("title")->controlValue().stringOr());
    EXPECT_EQ(screen_->profile(), row_->userInfo().objectAs<QXProfile>());
}

TEST_F(Editor, profileDeletedElsewhere_leavesAUsableScreenWithoutARecord) {
    open();
    deleteElsewhere();
    post(ProfileAppliedStateChangedNotification);
    EXPECT_EQ(nullptr, screen_->profile());
    EXPECT_TRUE(row_->userInfo().isNil());
    EXPECT_EQ(std::nullopt, screen_->title());
    EXPECT_EQ(5U, screen_->specifiers()->size());
    EXPECT_EQ("", cellOf("title")->controlValue().stringOr("none"));
    EXPECT_EQ(Value(true), cellOf("enabled")->controlValue()) << "a switch without a value has its default";
    move("title", "Lost");
    phone_.drain();
    ASSERT_NE(nullptr, alert());
    alert()->choose(0);
    move("enabled", false);
    phone_.drain();
    EXPECT_NE(nullptr, alert());
    EXPECT_EQ(Value(true), cellOf("enabled")->controlValue());
}

TEST_F(Editor, closed_isNotKeptAliveAndHearsNothing) {
    open();
    move("allDay", true);
    phone_.drain();
    EXPECT_TRUE(closesForGood());
    post(ProfileAppliedStateChangedNotification);
    post(ProfileDataUpdateNotification);
}

}  // namespace
}  // namespace quietrix
