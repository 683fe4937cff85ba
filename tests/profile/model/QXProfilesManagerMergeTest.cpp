// SPDX-License-Identifier: MIT
// What an update leaves of the changes of others, and what others leave of it.
#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <thread>

#include "tests/profile/model/StoreFixture.h"

namespace {

using doubles::required;
using platform::Array;
using platform::Dictionary;
using platform::Value;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// Lets a test do something while a file is being written.
class InterruptedFiles : public doubles::MemoryFileSystem {
  public:
    std::function<void()> interruption;

    platform::Result<void> write(std::string_view path, const platform::Data& data,
                                 platform::Write how) override {
        auto written = MemoryFileSystem::write(path, data, how);
        if (const auto now = std::exchange(interruption, nullptr)) now();
        return written;
    }
};

class StoreMerge : public StoreFixture {
  protected:
    StoreMerge() {
        phone_.files = files_;
        phone_.install();
        putFile(fileOf({theirs_}));
    }
    /// Changes the file as another process would.
    void changeElsewhere(const std::string& key, Value value) {
        if (value) {
            theirs_.insert_or_assign(key, std::move(value));
        } else {
            theirs_.erase(key);
        }
        putFile(fileOf({theirs_}));
    }
    Value inFile(std::string_view key) const { return storedProfile(0)[key]; }

    std::shared_ptr<InterruptedFiles> files_ = std::make_shared<InterruptedFiles>();
    Dictionary theirs_ = profile("A", "read")->storedValues();
};

TEST_F(StoreMerge, differentKeys_areBothStored) {
    const auto record = required(stored("A"));
    changeElsewhere("title", "theirs");
    changeElsewhere("alertToneIdentifier", "texttone:Bell");
    record->setVibrate(false);
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value("theirs"), inFile("title"));
    EXPECT_EQ(Value("texttone:Bell"), inFile("alertToneIdentifier"));
    EXPECT_EQ(Value(false), inFile("vibrate"));
    EXPECT_EQ("theirs", required(stored("A"))->title());
    EXPECT_EQ("read", record->title()) << "the caller's record is the caller's";
}

TEST_F(StoreMerge, keyTakenAwayElsewhere_staysAway) {
    changeElsewhere("alertToneIdentifier", "texttone:Bell");
    const auto record = required(stored("A"));
    changeElsewhere("alertToneIdentifier", Value());
    record->setVibrate(false);
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value(), inFile("alertToneIdentifier"));
}

TEST_F(StoreMerge, sameKey_theLaterChangeStands) {
    const auto record = required(stored("A"));
    changeElsewhere("title", "theirs");
    record->setTitle("mine");
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value("mine"), inFile("title"));
    changeElsewhere("title", "theirs");
    record->setTitle("mine");
    EXPECT_EQ("success", update(record)) << "equal to what it has";
    EXPECT_EQ(Value("mine"), inFile("title"));
    record->setTitle("read");
    EXPECT_EQ("success", update(record)) << "equal to what it had at first";
    EXPECT_EQ(Value("read"), inFile("title"));
}

TEST_F(StoreMerge, whatWasStoredOnce_isNotStoredAgain) {
    const auto record = required(stored("A"));
    record->setTitle("mine");
    EXPECT_EQ("success", update(record));
    changeElsewhere("title", "theirs");
    record->setVibrate(false);
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value("theirs"), inFile("title"));
    EXPECT_EQ(Value(false), inFile("vibrate"));
}

TEST_F(StoreMerge, failedUpdate_isMadeUpForByTheNext) {
    const auto record = required(stored("A"));
    record->setTitle("mine");
    files_->failWrites("No space left on device");
    EXPECT_THAT(update(record), HasSubstr("No space left"));
    files_->failWrites("");
    changeElsewhere("title", "theirs");
    record->setVibrate(false);
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value("mine"), inFile("title"));
}

TEST_F(StoreMerge, keySetBetweenHandOverAndSuccess_isStoredByTheNext) {
    const auto record = required(stored("A"));
    record->setTitle("handed over");
    files_->interruption = [&] {
        record->setTitle("after");
        record->setVibrate(false);
    };
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value("handed over"), inFile("title"));
    EXPECT_EQ(Value(true), inFile("vibrate"));
    changeElsewhere("title", "theirs");
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value("after"), inFile("title"));
    EXPECT_EQ(Value(false), inFile("vibrate"));
}

TEST_F(StoreMerge, lists_areMergedAlsoOverSeveralUpdates) {
    changeElsewhere("wifiNetworks", Array{"Home", "Office"});
    const auto record = required(stored("A"));
    changeElsewhere("wifiNetworks", Array{"Office", "Train", "Home"});
    record->removeFromWiFiNetwork("Home");
    record->addToWiFiNetwork("Café");
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value(Array{"Office", "Train", "Café"}), inFile("wifiNetworks"));
    changeElsewhere("wifiNetworks", Array{"Office", "Train", "Café", "Home"});
    record->removeFromWiFiNetwork("Office");
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value(Array{"Train", "Café", "Home"}), inFile("wifiNetworks"));
}

TEST_F(StoreMerge, newProfile_isHandedOverWhole) {
    const auto made = profile("B", "new");
    made->setNewProfile(true);
    made->setWifiNetworks({"Home"});
    EXPECT_EQ("success", add(made));
    EXPECT_EQ(Value(made->storedValues()), storedProfile(1));
}

TEST_F(StoreMerge, listWithOneBadElement_isNotEmptiedBySavingAnotherKey) {
    changeElsewhere("calendarIdentifiers", Array{"Home/family", 5, "Work/meetings"});
    for (int turn = 0; turn < 3; ++turn) {
        const auto record = required(stored("A"));
        EXPECT_THAT(record->calendarIdentifiers(), ElementsAre("Home/family", "Work/meetings"));
        record->setTitle("turn " + std::to_string(turn));
        EXPECT_EQ("success", update(record));
        EXPECT_EQ(Value(Array{"Home/family", 5, "Work/meetings"}), inFile("calendarIdentifiers"));
        store_->reloadProfiles();
    }
    EXPECT_THAT(phone_.log->lines(),
                ElementsAre(AllOf(HasSubstr("\"A\""), HasSubstr("calendarIdentifiers"))));

    changeElsewhere("title", 4);
    static_cast<void>(stored("A"));
    EXPECT_THAT(phone_.log->lines(), SizeIs(3)) << "read anew, with two of them";
}

TEST_F(StoreMerge, deletionInTheBackground_doesNotReadTheRecord) {
    const auto record = required(stored("A"));
    std::atomic<bool> isOver = false;
    std::thread deletion([&] {
        store_->deleteProfile_success_failure(record, nullptr, nullptr);
        isOver = true;
    });
    // The thread sanitizer tells when the deletion looks at what is being changed here.
    for (int turn = 0; !isOver || turn == 0; ++turn) record->setTitle("turn " + std::to_string(turn));
    deletion.join();
    phone_.drain();
    EXPECT_EQ(0U, storedCount());
}

class StoreThatCannotLook : public StoreMerge, public testing::WithParamInterface<const char*> {};

TEST_P(StoreThatCannotLook, keepsWhatWasReadAndRefusesChanges) {
    const auto record = required(stored("A"));
    const platform::Data before = rawFile();
    const std::string reason = GetParam();
    files_->failStamps(reason);
    for (int turn = 0; turn < 3; ++turn) {
        store_->reloadProfiles();
        EXPECT_EQ(record, stored("A"));
        EXPECT_THAT(identifiersOf(store_->enabledProfiles()), ElementsAre("A"));
    }
    EXPECT_THAT(phone_.log->lines(), ElementsAre(AllOf(HasSubstr(path_), HasSubstr(reason))));

    for (const auto& outcome : {update(record), add(profile("B")), remove(record)})
        EXPECT_THAT(outcome, AllOf(HasSubstr(path_), HasSubstr(reason)));
    EXPECT_EQ(before, rawFile());
    EXPECT_THAT(phone_.log->lines(), SizeIs(1));
    phone_.takeEvents();
    store_->reloadProfiles();
    EXPECT_EQ(Value(false), phone_.takeEvents("store").at(0).at("ok"));

    files_->failStamps("");
    record->setTitle("mine");
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value("mine"), inFile("title"));
    files_->failStamps(reason);
    static_cast<void>(stored("A"));
    EXPECT_THAT(phone_.log->lines(), SizeIs(2)) << "a second time is told again";
}

TEST_P(StoreThatCannotLook, atTheStartIsEmptyAndDoesNotBeginTheFileAnew) {
    files_->failStamps(GetParam());
    EXPECT_THAT(store_->enabledProfiles(), IsEmpty());
    const platform::Data before = rawFile();
    EXPECT_THAT(add(profile("B")), HasSubstr(GetParam()));
    EXPECT_EQ(before, rawFile());
    files_->failStamps("");
    EXPECT_NE(nullptr, stored("A"));
}

INSTANTIATE_TEST_SUITE_P(Reasons, StoreThatCannotLook,
                         testing::Values("Permission denied", "Too many levels of symbolic links",
                                         "Input/output error", "File name too long", "Cannot allocate memory",
                                         "Value too large for defined data type", "Stale file handle"));

TEST_F(StoreMerge, fileThatCannotBeLookedAtAfterAChange_isReadAgain) {
    const auto record = required(stored("A"));
    record->setTitle("mine");
    files_->interruption = [&] { files_->failStamps("Input/output error"); };
    EXPECT_EQ("success", update(record));
    EXPECT_EQ("mine", required(stored("A"))->title()) << "what was written is what the store has";
    files_->failStamps("");
    changeElsewhere("title", "theirs");
    EXPECT_EQ("theirs", required(stored("A"))->title());
}

}  // namespace
