// SPDX-License-Identifier: MIT
#include "profile/hours/QXDateRangeController.h"
#include "shell/base/NotificationNames.h"
#include "tests/profile/hours/HoursFixture.h"

namespace quietrix {
namespace {

using platform::NotificationCenter;

class HoursScreen : public HoursFixture {
  protected:
    static void postAppliedState() { post(ProfileAppliedStateChangedNotification); }
};

TEST_F(HoursScreen, newProfile_onlyAnnouncesTheChange) {
    openNew("9:00 AM", "5:00 PM");
    pick("10:00 AM");
    phone_.drain();
    EXPECT_EQ("10:00 AM", profile_->startTime());
    const auto events = phone_.takeEvents();
    const auto stores =
        std::ranges::count_if(events, [](const auto& event) { return event.at("event") == "store"; });
    EXPECT_EQ(0, stores);
    const auto posts = std::ranges::count_if(events, [](const auto& event) {
        return event.at("event") == "local" &&
               event.at("name") == "com.velmora.ProfileDataUpdateNotification";
    });
    EXPECT_EQ(1, posts);
}

TEST_F(HoursScreen, existingProfile_announcesNoDataChange) {
    openStored("9:00 AM", "5:00 PM");
    pick("10:00 AM");
    for (const auto& event : phone_.takeEvents("local"))
        EXPECT_NE("com.velmora.ProfileDataUpdateNotification", event.at("name").stringOr());
}

TEST_F(HoursScreen, failedSave_showsTheErrorAndKeepsTheTimeInMemory) {
    openStored("9:00 AM", "5:00 PM");
    failWrites();
    pick("10:00 AM");
    phone_.drain();
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Error", alert()->title());
    EXPECT_EQ("10:00 AM", profile_->startTime());
    EXPECT_EQ("From 10:00 AM", rowText(0));
}

TEST_F(HoursScreen, appliedStateChanged_takesTheStoresCopyWithoutRefreshing) {
    openStored("9:00 AM", "5:00 PM");
    EXPECT_EQ("From 9:00 AM", rowText(0));
    storeElsewhere("startTime", "7:00 AM");
    postAppliedState();
    const auto fresh = row_->userInfo().objectAs<QXProfile>();
    ASSERT_NE(nullptr, fresh);
    EXPECT_NE(profile_, fresh);
    EXPECT_EQ("7:00 AM", fresh->startTime());
    EXPECT_EQ("From 9:00 AM", rowText(0));
    selectRow(0);
    EXPECT_EQ("7:00 AM", pickedTime());
}

TEST_F(HoursScreen, profileGoneFromTheStore_keepsItsRecordAndSaysSoOnAChange) {
    openStored("9:00 AM", "5:00 PM");
    deleteElsewhere();
    postAppliedState();
    EXPECT_EQ(profile_, row_->userInfo().objectAs<QXProfile>());
    selectRow(1);
    pick("6:00 PM");
    phone_.drain();
    EXPECT_NE(nullptr, alert());
}

TEST_F(HoursScreen, newProfileWhenTheAppliedStateChanges_keepsWhatWasSet) {
    openNew("9:00 AM", "5:00 PM");
    pick("10:00 AM");
    postAppliedState();
    selectRow(1);
    pick("6:00 PM");
    phone_.drain();
    EXPECT_EQ(profile_, row_->userInfo().objectAs<QXProfile>());
    EXPECT_EQ("10:00 AM", profile_->startTime());
    EXPECT_EQ("6:00 PM", profile_->endTime());
    EXPECT_EQ(nullptr, alert());
    EXPECT_EQ(0U, storeCalls());
}

TEST_F(HoursScreen, shownAgain_keepsItsPaneAndObservesOnce) {
    openStored("9:00 AM", "5:00 PM");
    const auto pane = screen_->pane();
    screen_->loadPane();
    EXPECT_EQ(pane, screen_->pane());
    EXPECT_EQ(1U, NotificationCenter::defaultCenter().observerCount(ProfileAppliedStateChangedNotification));
}

TEST_F(HoursScreen, closed_isNotKeptAlive) {
    openStored("9:00 AM", "5:00 PM");
    pick("10:00 AM");
    phone_.drain();
    const std::weak_ptr<QXDateRangePane> pane = pane_;
    pane_.reset();
    table_.reset();
    EXPECT_TRUE(closesForGood());
    EXPECT_TRUE(pane.expired());
    postAppliedState();
}

}  // namespace
}  // namespace quietrix
