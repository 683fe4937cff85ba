// SPDX-License-Identifier: MIT
#include "tests/shell/root/RootListFixture.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::UITableViewCellEditingStyleDelete;
using platform::UITableViewCellEditingStyleNone;

class RootListDelete : public RootListFixture {
  protected:
    RootListDelete() {
        addProfile("Work", true);
        addProfile("Sleep", true);
        switchProductBefore(true);
        open();
    }
    platform::IndexPath pathNamed(const std::string& name, const Where& where = Where::current()) {
        return *required(screen_->indexPathForIndex(indexNamed(name, where)), where);
    }
    bool swipe(const std::string& name) { return screen_->userDeletedRow(pathNamed(name)); }
};

TEST_F(RootListDelete, onlyProfileRows_canBeDeleted) {
    const auto style = [this](const std::string& name) {
        return screen_->tableView_editingStyleForRowAtIndexPath(screen_->table(), pathNamed(name));
    };
    EXPECT_EQ(UITableViewCellEditingStyleDelete, style("Work"));
    EXPECT_EQ(UITableViewCellEditingStyleNone, style("Enabled"));
    EXPECT_EQ(UITableViewCellEditingStyleNone, style("No Profiles"));
    EXPECT_EQ(UITableViewCellEditingStyleNone, style("Miscellaneous"));
}

TEST_F(RootListDelete, swiped_asksWithTheProfilesTitle) {
    ASSERT_TRUE(swipe("Work"));
    const auto sheet = alert();
    ASSERT_NE(nullptr, sheet);
    EXPECT_EQ(platform::UIAlertControllerStyleActionSheet, sheet->preferredStyle());
    EXPECT_EQ(std::nullopt, sheet->title());
    EXPECT_EQ("Are you sure you want to delete the profile 'Work'?", sheet->message());
    ASSERT_EQ(2U, sheet->actions().size());
    EXPECT_EQ("Delete", sheet->actions()[0].title);
    EXPECT_EQ(platform::UIAlertActionStyleDestructive, sheet->actions()[0].style);
    EXPECT_EQ("Cancel", sheet->actions()[1].title);
    EXPECT_EQ(platform::UIAlertActionStyleCancel, sheet->actions()[1].style);
}

TEST_F(RootListDelete, swiped_asksInThePhonesLanguage) {
    phone_.facts->languages = {"de"};
    ASSERT_TRUE(swipe("Work"));
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Möchtest du das Profil „Work“ wirklich löschen?", alert()->message());
    EXPECT_EQ("Löschen", alert()->actions().at(0).title);
    EXPECT_EQ("Abbrechen", alert()->actions().at(1).title);
}

TEST_F(RootListDelete, otherStyle_doesNothing) {
    screen_->tableView_commitEditingStyle_forRowAtIndexPath(screen_->table(), UITableViewCellEditingStyleNone,
                                                            pathNamed("Work"));
    EXPECT_EQ(nullptr, alert());
}

TEST_F(RootListDelete, cancelled_leavesEditingModeAndKeepsTheProfile) {
    ASSERT_TRUE(swipe("Work"));
    EXPECT_TRUE(screen_->isEditing());
    required(alert())->choose(1);
    EXPECT_FALSE(screen_->isEditing());
    EXPECT_EQ(nullptr, alert());
    phone_.drain();
    EXPECT_NE(nullptr, findRow("Work"));
    EXPECT_EQ(2U, QXProfilesManager::sharedManager()->enabledProfiles().size());
}

TEST_F(RootListDelete, confirmed_removesTheRowAtOnceAndThenTheProfile) {
    ASSERT_TRUE(swipe("Work"));
    phone_.takeEvents();
    required(alert())->choose(0);
    const auto removals = phone_.takeEvents("remove");
    ASSERT_EQ(1U, removals.size());
    EXPECT_EQ("3", doubles::joined(removals, "index"));
    EXPECT_FALSE(screen_->isEditing());
    phone_.drain();
    EXPECT_EQ(nullptr, findRow("Work"));
    const auto left = QXProfilesManager::sharedManager()->enabledProfiles();
    ASSERT_EQ(1U, left.size());
    EXPECT_EQ("Sleep", left[0]->title());
}

TEST_F(RootListDelete, confirmedWhileTheFileIsLocked_leavesTheWaitingToTheBackground) {
    ASSERT_TRUE(swipe("Work"));
    auto lock = phone_.files->lockExclusively(profilesPath, 0);
    ASSERT_TRUE(lock);
    // Deleted here, on the main thread, the profile would wait for the lock until its time is over.
    required(alert())->choose(0);
    EXPECT_EQ(nullptr, findRow("Work"));
    lock->reset();
    phone_.drain();
    EXPECT_EQ(nullptr, alert());
    EXPECT_EQ(1U, QXProfilesManager::sharedManager()->enabledProfiles().size());
}

TEST_F(RootListDelete, screenGoneWhileAsking_isNotKeptByTheSheet) {
    ASSERT_TRUE(swipe("Work"));
    const auto sheet = alert();
    ASSERT_NE(nullptr, sheet);
    const std::weak_ptr<QuietrixPreferencesController> weak = screen_;
    screen_ = nullptr;
    navigation_ = nullptr;
    phone_.show(nullptr);
    EXPECT_TRUE(weak.expired());
    sheet->choose(0);
    phone_.drain();
    EXPECT_EQ(2U, QXProfilesManager::sharedManager()->enabledProfiles().size());
}

TEST_F(RootListDelete, deletedMeanwhile_takesNoOtherRowWithIt) {
    ASSERT_TRUE(swipe("Work"));
    const auto store = QXProfilesManager::sharedManager();
    store->deleteProfile_success_failure(store->enabledProfiles().at(0), nullptr, nullptr);
    phone_.drain();
    ASSERT_EQ(nullptr, findRow("Work"));
    phone_.takeEvents();
    required(alert())->choose(0);
    EXPECT_TRUE(phone_.takeEvents("remove").empty());
    EXPECT_FALSE(screen_->isEditing());
    phone_.drain();
    EXPECT_NE(nullptr, findRow("Sleep"));
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Error", alert()->title());
}

TEST_F(RootListDelete, renamedAndMovedToTheOtherSectionMeanwhile_losesThatRow) {
    ASSERT_TRUE(swipe("Work"));
    const auto store = QXProfilesManager::sharedManager();
    const auto profile = store->enabledProfiles().at(0);
    profile->setTitle("Renamed");
    profile->setEnabled(false);
    store->updateProfile_success_failure(profile, nullptr, nullptr);
    phone_.drain();
    const auto index = indexNamed("Renamed");
    ASSERT_GT(index, indexNamed("Sleep"));
    phone_.takeEvents();
    required(alert())->choose(0);
    const auto removals = phone_.takeEvents("remove");
    ASSERT_EQ(1U, removals.size());
    EXPECT_EQ(platform::Value("Renamed"), removals[0].at("name"));
    EXPECT_EQ(platform::Value(index), removals[0].at("index"));
    phone_.drain();
    EXPECT_EQ(nullptr, findRow("Renamed"));
    EXPECT_NE(nullptr, findRow("Sleep"));
    EXPECT_TRUE(store->disabledProfiles().empty());
}

TEST_F(RootListDelete, failed_showsTheErrorAndTheNextRefreshBringsTheRowBack) {
    ASSERT_TRUE(swipe("Work"));
    phone_.files->failWrites("No space left on device");
    required(alert())->choose(0);
    EXPECT_EQ(nullptr, findRow("Work"));
    phone_.drain();
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Error", alert()->title());
    ASSERT_TRUE(alert()->message());
    EXPECT_NE(std::string::npos, alert()->message()->find("No space left on device"));
    alert()->choose(0);
    screen_->profilesUpdated({});
    phone_.drain();
    EXPECT_NE(nullptr, findRow("Work"));
}

TEST_F(RootListDelete, screenGoneBeforeTheFailure_showsNothing) {
    ASSERT_TRUE(swipe("Work"));
    phone_.files->failWrites("No space left on device");
    required(alert())->choose(0);
    phone_.show(nullptr);
    const std::weak_ptr<QuietrixPreferencesController> weak = screen_;
    screen_ = nullptr;
    navigation_ = nullptr;
    phone_.drain();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(nullptr, doubles::Phone::top());
}

}  // namespace
}  // namespace quietrix
