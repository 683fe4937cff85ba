// SPDX-License-Identifier: MIT
#include "shell/base/NotificationNames.h"
#include "tests/profile/editor/EditorFixture.h"

namespace quietrix {
namespace {

using doubles::required;

class NewProfileEditor : public EditorFixture {
  protected:
    NewProfileEditor() { profile_->setNewProfile(true); }
    bool isPresented() const { return doubles::Phone::top() != navigation_; }
};

TEST_F(NewProfileEditor, bar_hasCancelAndSave) {
    open();
    const auto& item = screen_->navigationItem();
    ASSERT_EQ(1U, item->leftBarButtonItems().size());
    const auto cancel = item->leftBarButtonItems().front();
    EXPECT_EQ(platform::UIBarButtonSystemItemCancel, cancel->systemItem());
    EXPECT_EQ("dismissVieControllerAction:", cancel->action().selector());
    ASSERT_EQ(1U, item->rightBarButtonItems().size());
    EXPECT_EQ(platform::UIBarButtonSystemItemSave, required(item->rightBarButtonItem())->systemItem());
    EXPECT_EQ("addProfileAction:", required(item->rightBarButtonItem())->action().selector());
}

TEST_F(NewProfileEditor, existingProfile_hasNoButtonsOfItsOwn) {
    profile_->setNewProfile(false);
    open();
    EXPECT_TRUE(screen_->navigationItem()->leftBarButtonItems().empty());
    ASSERT_EQ(1U, screen_->navigationItem()->rightBarButtonItems().size());
    EXPECT_EQ("twitter",
              required(required(screen_->navigationItem()->rightBarButtonItem())->image())->name());
}

TEST_F(NewProfileEditor, changes_stayInMemory) {
    open();
    move("title", "Gym");
    move("enabled", false);
    move("enabled", true);
    move("playAlert", false);
    phone_.drain();
    for (const auto& event : phone_.takeEvents()) EXPECT_NE("store", event.at("event").stringOr());
    EXPECT_EQ("Gym", profile_->title());
    EXPECT_FALSE(profile_->isPlayAlert());
    EXPECT_EQ(nullptr, stored());
}

TEST_F(NewProfileEditor, saved_addsOnceAndCloses) {
    open();
    move("title", "Gym");
    phone_.takeEvents();
    screen_->addProfileAction(nullptr);
    EXPECT_EQ("add ok", happened());
    EXPECT_TRUE(isPresented()) << "the store answers through the main queue";
    phone_.drain();
    EXPECT_FALSE(isPresented());
    EXPECT_EQ(nullptr, screen_->navigationItem()->rightBarButtonItem());
    EXPECT_EQ("Gym", required(stored())->title());
}

/// Tells whether the Save button was still there when the screen began to leave.
class LeavingEditor : public QuietrixProflePreferencesController {
  public:
    void viewWillDisappear(bool animated) override {
        hadButtonWhenLeaving = navigationItem()->rightBarButtonItem() != nullptr;
        QuietrixProflePreferencesController::viewWillDisappear(animated);
    }
    std::optional<bool> hadButtonWhenLeaving;
};

TEST_F(NewProfileEditor, saved_losesItsButtonBeforeItLeaves) {
    const auto leaving = std::make_shared<LeavingEditor>();
    open(leaving);
    ASSERT_NE(nullptr, leaving->navigationItem()->rightBarButtonItem());
    leaving->addProfileAction(nullptr);
    phone_.drain();
    EXPECT_FALSE(isPresented());
    EXPECT_EQ(false, leaving->hadButtonWhenLeaving);
}

TEST_F(NewProfileEditor, savedWithoutATitle_isAdded) {
    open();
    move("title", "");
    screen_->addProfileAction(nullptr);
    phone_.drain();
    ASSERT_NE(nullptr, stored());
    EXPECT_EQ("", stored()->title());
}

TEST_F(NewProfileEditor, failedSave_staysOpenWithItsButtonAndValues) {
    open();
    failWrites();
    move("title", "Gym");
    screen_->addProfileAction(nullptr);
    phone_.drain();
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Error", alert()->title());
    alert()->choose(0);
    EXPECT_TRUE(isPresented());
    EXPECT_NE(nullptr, screen_->navigationItem()->rightBarButtonItem());
    EXPECT_EQ("Gym", profile_->title());
    EXPECT_EQ("Gym", cellOf("title")->controlValue().stringOr());
    phone_.files->failWrites("", std::string(profilesPath));
    screen_->addProfileAction(nullptr);
    phone_.drain();
    EXPECT_FALSE(isPresented());
}

TEST_F(NewProfileEditor, cancelled_savesAndPostsNothing) {
    open();
    move("title", "Gym");
    phone_.takeEvents();
    screen_->dismissVieControllerAction(nullptr);
    phone_.drain();
    for (const auto& event : phone_.takeEvents()) {
        const std::string kind = event.at("event").stringOr();
        EXPECT_TRUE(kind != "store" && kind != "local" && kind != "darwin") << kind;
    }
    EXPECT_FALSE(isPresented());
    EXPECT_EQ(nullptr, stored());
}

TEST_F(NewProfileEditor, dataUpdated_keepsTheRecordAndRebuilds) {
    open();
    const auto row = rowOf("enabled");
    profile_->setAllDay(true);
    phone_.takeEvents();
    post(ProfileDataUpdateNotification);
    EXPECT_EQ("", happened());
    EXPECT_EQ(profile_, screen_->profile());
    EXPECT_NE(row, rowOf("enabled"));
    EXPECT_EQ(-1, indexOf("Active Hours"));
}

TEST_F(NewProfileEditor, appliedStateChanged_losesTheRecord) {
    open();
    post(ProfileAppliedStateChangedNotification);
    EXPECT_EQ(nullptr, screen_->profile());
    EXPECT_TRUE(row_->userInfo().isNil());
    screen_->addProfileAction(nullptr);
    phone_.drain();
    EXPECT_NE(nullptr, alert());
    EXPECT_TRUE(isPresented());
}

TEST_F(NewProfileEditor, closedWhileTheStoreIsAtWork_isLeftAlone) {
    open();
    screen_->addProfileAction(nullptr);
    const std::weak_ptr<QuietrixProflePreferencesController> screen = screen_;
    screen_->dismissVieControllerAction(nullptr);
    screen_.reset();
    EXPECT_TRUE(screen.expired()) << "the callbacks hold the screen weakly";
    phone_.drain();
    EXPECT_NE(nullptr, stored());
}

}  // namespace
}  // namespace quietrix
