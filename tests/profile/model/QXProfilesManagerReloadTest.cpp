// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "tests/profile/model/StoreFixture.h"

namespace {

using doubles::required;
using platform::Dictionary;
using platform::Value;
using quietrix::QXProfilesManager;
using testing::ElementsAre;
using testing::IsEmpty;

class StoreReload : public StoreFixture {
  protected:
    int reads() const { return phone_.files->reads(path_); }
};

TEST_F(StoreReload, absentFile_isAnEmptyStore) {
    store_->reloadProfiles();
    EXPECT_THAT(store_->enabledProfiles(), IsEmpty());
    EXPECT_THAT(store_->disabledProfiles(), IsEmpty());
    EXPECT_THAT(phone_.log->lines(), IsEmpty());
    EXPECT_FALSE(phone_.files->exists(path_));
}

TEST_F(StoreReload, firstQuestion_readsTheFileOnce) {
    putFile(fileOf({profile("A")->storedValues(), Dictionary{{"identifier", "B"}, {"enabled", false}}}));
    EXPECT_EQ(0, reads());
    EXPECT_THAT(identifiersOf(store_->enabledProfiles()), ElementsAre("A"));
    EXPECT_THAT(identifiersOf(store_->disabledProfiles()), ElementsAre("B"));
    EXPECT_NE(nullptr, stored("B"));
    EXPECT_EQ(1, reads());
}

TEST_F(StoreReload, unchangedFile_isNotReadAgain) {
    putFile(fileOf({profile("A")->storedValues()}));
    store_->reloadProfiles();
    const auto record = stored("A");
    for (int i = 0; i < 10; ++i) store_->reloadProfiles();
    EXPECT_EQ(1, reads());
    EXPECT_EQ(record, stored("A"));
}

TEST_F(StoreReload, fileWrittenByTheStoreItself_isNotRead) {
    add(profile("A"));
    store_->reloadProfiles();
    EXPECT_EQ(0, reads());
    EXPECT_NE(nullptr, stored("A"));
}

TEST_F(StoreReload, changedFile_givesNewRecordsAndLeavesOldOnesAlone) {
    putFile(fileOf({profile("A", "old")->storedValues()}));
    const auto old = required(stored("A"));
    putFile(fileOf({profile("A", "new")->storedValues(), profile("B")->storedValues()}));
    store_->reloadProfiles();
    EXPECT_EQ("new", required(stored("A"))->title());
    EXPECT_EQ("old", old->title());
    EXPECT_NE(nullptr, stored("B"));
    EXPECT_EQ(2, reads());
}

TEST_F(StoreReload, everyQuestion_isAnsweredFromTheFileAsItIs) {
    putFile(fileOf({profile("A", "old")->storedValues()}));
    const auto old = required(stored("A"));
    const auto question = [this](int number) -> std::vector<std::string> {
        if (number == 0) return identifiersOf(store_->enabledProfiles());
        if (number == 1) return identifiersOf(store_->disabledProfiles());
        const auto found = required(stored(std::to_string(number)));
        return found ? std::vector<std::string>{found->title()} : std::vector<std::string>();
    };
    for (int number = 0; number < 3; ++number) {
        const auto theirs = profile(std::to_string(number), "theirs");
        theirs->setEnabled(number != 1);
        putFile(fileOf({theirs->storedValues()}));
        EXPECT_THAT(question(number), ElementsAre(number < 2 ? std::to_string(number) : "theirs"));
    }
    ASSERT_TRUE(phone_.files->remove(path_));
    EXPECT_EQ(nullptr, stored("2"));
    EXPECT_THAT(store_->enabledProfiles(), IsEmpty());
    EXPECT_EQ("old", old->title());
}

TEST_F(StoreReload, question_costsOneLookAndTellsNothing) {
    putFile(fileOf({profile("A")->storedValues()}));
    static_cast<void>(stored("A"));
    phone_.takeEvents();
    int looks = phone_.files->stamps(path_);
    static_cast<void>(stored("A"));
    static_cast<void>(store_->enabledProfiles());
    static_cast<void>(store_->disabledProfiles());
    EXPECT_EQ(looks + 3, phone_.files->stamps(path_));
    EXPECT_EQ(1, reads());

    putFile(fileOf({profile("A", "new")->storedValues()}));
    EXPECT_EQ("new", required(stored("A"))->title());
    EXPECT_EQ(2, reads());
    phone_.drain();
    EXPECT_THAT(phone_.takeEvents(), IsEmpty());
    EXPECT_THAT(phone_.notifications->takePosted(), IsEmpty());
}

TEST_F(StoreReload, recordThatCouldNotBeSaved_outlivesQuestions) {
    putFile(fileOf({profile("A", "saved")->storedValues()}));
    const auto record = required(stored("A"));
    record->setTitle("unsaved");
    phone_.files->failWrites("No space left on device");
    EXPECT_THAT(update(record), testing::HasSubstr("No space left"));
    EXPECT_EQ(record, stored("A"));
    static_cast<void>(store_->disabledProfiles());
    EXPECT_EQ("unsaved", store_->enabledProfiles().at(0)->title());
}

TEST_F(StoreReload, recordThatWasChangedAndNotSaved_isReplaced) {
    putFile(fileOf({profile("A", "saved")->storedValues(), profile("B")->storedValues()}));
    const auto changed = required(stored("A"));
    const auto untouched = stored("B");
    changed->setTitle("unsaved");
    EXPECT_EQ(changed, stored("A"));
    store_->reloadProfiles();
    EXPECT_NE(changed, stored("A"));
    EXPECT_EQ("saved", required(stored("A"))->title());
    EXPECT_EQ("unsaved", changed->title());
    EXPECT_EQ(untouched, stored("B"));
    EXPECT_EQ(1, reads());
}

TEST_F(StoreReload, everyKindOfChange_isNoticed) {
    using Record = std::shared_ptr<quietrix::QXProfile>;
    const std::vector<void (*)(const Record&)> changes{
        [](const Record& record) { record->mutableCalendarIdentifiers().emplace_back("c"); },
        [](const Record& record) { record->addToWiFiNetwork("Home"); },
        [](const Record& record) { record->setValue_forKey(0.5, "ringerVolume"); },
        [](const Record& record) { record->setIdentifier("Z"); },
        [](const Record& record) { record->setNewProfile(true); }};
    putFile(fileOf({profile("A")->storedValues()}));
    for (const auto change : changes) {
        const auto record = stored("A");
        change(record);
        store_->reloadProfiles();
        EXPECT_NE(record, stored("A"));
        EXPECT_EQ(Value(profile("A")->storedValues()), Value(required(stored("A"))->storedValues()));
    }
}

TEST_F(StoreReload, recordSavedInTheMeantime_isNotReplacedOnceMore) {
    putFile(fileOf({profile("A")->storedValues()}));
    const auto record = required(stored("A"));
    record->setTitle("x");
    EXPECT_EQ("success", update(record));
    const auto fresh = stored("A");
    record->setTitle("y");
    store_->reloadProfiles();
    EXPECT_EQ(fresh, stored("A"));
}

TEST_F(StoreReload, removedFile_isAnEmptyStore) {
    add(profile("A"));
    ASSERT_TRUE(phone_.files->remove(path_));
    store_->reloadProfiles();
    EXPECT_EQ(nullptr, stored("A"));
    EXPECT_THAT(store_->enabledProfiles(), IsEmpty());
}

TEST_F(StoreReload, shouldReload_isAReload) {
    EXPECT_EQ(nullptr, stored("A"));
    putFile(fileOf({profile("A")->storedValues()}));
    phone_.takeEvents();
    EXPECT_NE(nullptr, store_->profileByIdentifier_shouldReload("A", true));
    EXPECT_EQ(1U, phone_.takeEvents("store").size());
}

TEST_F(StoreReload, unsavedSwitchingOff_isSeenInTheLists) {
    putFile(fileOf({profile("A")->storedValues()}));
    required(stored("A"))->setEnabled(false);
    EXPECT_THAT(store_->enabledProfiles(), IsEmpty());
    EXPECT_THAT(identifiersOf(store_->disabledProfiles()), ElementsAre("A"));
    store_->reloadProfiles();
    EXPECT_THAT(identifiersOf(store_->enabledProfiles()), ElementsAre("A"));
}

TEST_F(StoreReload, sharedManager_isOneUntilItIsReset) {
    QXProfilesManager::resetSharedManager();
    const auto first = QXProfilesManager::sharedManager();
    EXPECT_EQ(first, QXProfilesManager::sharedManager());
    QXProfilesManager::resetSharedManager();
    EXPECT_NE(first, QXProfilesManager::sharedManager());
    QXProfilesManager::resetSharedManager();
}

}  // namespace
