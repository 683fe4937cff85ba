// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <atomic>
#include <thread>

#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/RunLoop.h"
#include "tests/profile/model/StoreFixture.h"

namespace {

using doubles::required;
using platform::Array;
using platform::Dictionary;
using platform::Value;
using quietrix::QXProfile;
using quietrix::QXProfilesManager;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class StoreChange : public StoreFixture {};

/// Writes down the local notifications that it gets.
class Listener : public platform::Object {
  public:
    explicit Listener(std::vector<std::string>& heard) : heard_(heard) {}
    void listen() {
        platform::NotificationCenter::defaultCenter().addObserver_selector_name_object(
            shared(this), platform::method("heard:", &Listener::hear), "", nullptr);
    }
    void hear(const platform::Notification& notification) {
        heard_.push_back(notification.name +
                         (notification.object || notification.userInfo ? " with more" : ""));
    }

  private:
    std::vector<std::string>& heard_;
};

TEST_F(StoreChange, firstProfile_makesTheFile) {
    const auto record = profile("A", "Work");
    record->setRingerVolume(1);
    record->setWifiNetworks({"Home"});
    EXPECT_EQ("success", add(record));
    EXPECT_EQ(platform::PropertyListFormat::Binary,
              platform::PropertyListSerialization::formatOfData(rawFile()).value());
    EXPECT_EQ(fileOf({record->storedValues()}), file());
    EXPECT_EQ(Value(1.0), storedProfile(0)["ringerVolume"]);
    EXPECT_EQ(Value(true), storedProfile(0)["enabled"]);
}

TEST_F(StoreChange, addedProfiles_standInTheirOrder) {
    for (const char* identifier : {"C", "A", "B"}) EXPECT_EQ("success", add(profile(identifier)));
    EXPECT_THAT(identifiersOf(store_->enabledProfiles()), ElementsAre("C", "A", "B"));
    EXPECT_EQ(3U, storedCount());
}

TEST_F(StoreChange, addedProfile_isNewNoMoreInTheStore) {
    const auto record = profile("A");
    record->setNewProfile(true);
    EXPECT_EQ("success", add(record));
    ASSERT_NE(nullptr, stored("A"));
    EXPECT_FALSE(stored("A")->isNewProfile());
    EXPECT_NE(record, stored("A"));
    EXPECT_TRUE(record->isNewProfile());
    EXPECT_EQ(Value(), storedProfile(0)["newProfile"]);
}

TEST_F(StoreChange, newNeverAddedProfile_isNotFound) {
    EXPECT_EQ(nullptr, stored(QXProfile::defaultProfile()->identifier()));
    EXPECT_EQ(nullptr, store_->profileByIdentifier_shouldReload("", true));
}

TEST_F(StoreChange, update_writesTheWholeRecord) {
    add(profile("A"));
    add(profile("B"));
    const auto record = required(stored("A"));
    record->setTitle("Night");
    record->setEnabled(false);
    record->setAlertToneIdentifier("texttone:Bell");
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value(record->storedValues()), storedProfile(0));
    EXPECT_THAT(identifiersOf(store_->enabledProfiles()), ElementsAre("B"));
    EXPECT_THAT(identifiersOf(store_->disabledProfiles()), ElementsAre("A"));
    record->setAlertToneIdentifier(std::nullopt);
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value(record->storedValues()), storedProfile(0));
}

TEST_F(StoreChange, everyChange_replacesTheFileAsAWhole) {
    ASSERT_EQ("success", add(profile("A")));
    const auto inode = [this] { return phone_.files->stamp(path_).value()->inode; };
    const auto first = inode();
    ASSERT_EQ("success", update(profile("A", "a")));
    const auto second = inode();
    EXPECT_NE(first, second);
    ASSERT_EQ("success", remove(profile("A")));
    EXPECT_NE(second, inode());
}

TEST_F(StoreChange, success_givesANewRecordAndLeavesTheOldOneAlone) {
    add(profile("A"));
    const auto record = required(stored("A"));
    record->setTitle("Night");
    EXPECT_EQ("success", update(record));
    const auto fresh = required(stored("A"));
    EXPECT_NE(record, fresh);
    EXPECT_EQ("Night", fresh->title());
    fresh->setTitle("Day");
    EXPECT_EQ("Night", record->title());
    EXPECT_EQ(fresh, stored("A"));
}

TEST_F(StoreChange, changeOfOneProfile_leavesTheRecordsOfTheOthers) {
    add(profile("A"));
    add(profile("B"));
    const auto other = required(stored("B"));
    other->setTitle("not saved");
    EXPECT_EQ("success", update(stored("A")));
    EXPECT_EQ(other, stored("B"));
}

TEST_F(StoreChange, deletedProfile_isGoneAndDoesNotComeBack) {
    add(profile("A"));
    add(profile("B"));
    const auto record = stored("A");
    EXPECT_EQ("success", remove(record));
    EXPECT_EQ(nullptr, stored("A"));
    EXPECT_EQ(1U, storedCount());
    EXPECT_THAT(update(record), AllOf(HasSubstr("\"A\""), HasSubstr(path_), HasSubstr("deleted")));
    EXPECT_THAT(remove(record), AllOf(HasSubstr("\"A\""), HasSubstr(path_), HasSubstr("deleted")));
    EXPECT_EQ(1U, storedCount());
    EXPECT_THAT(identifiersOf(store_->enabledProfiles()), ElementsAre("B"));
}

TEST_F(StoreChange, identifierThatIsThere_isNotAddedAgain) {
    add(profile("A", "first"));
    const auto before = rawFile();
    EXPECT_THAT(add(profile("A", "second")), AllOf(HasSubstr("\"A\""), HasSubstr("already")));
    EXPECT_EQ(before, rawFile());
    EXPECT_EQ("first", required(stored("A"))->title());
}

TEST_F(StoreChange, profilesWhoseIdentifiersHaveOneHash_areTwo) {
    const std::string one = "000135C7-0000-4000-8000-000000000000";
    const std::string other = "00013702-0000-4000-8000-000000000000";
    ASSERT_EQ("success", add(profile(one, "One")));
    ASSERT_EQ("success", add(profile(other, "Other")));
    // As another process finds them: read from the file, and not as they were added.
    store_ = std::make_shared<QXProfilesManager>();
    ASSERT_NE(nullptr, stored(one));
    ASSERT_NE(nullptr, stored(other));
    EXPECT_EQ("One", stored(one)->title());
    EXPECT_EQ("Other", stored(other)->title());
    EXPECT_EQ("success", update(profile(other, "Changed")));
    ASSERT_EQ(2U, storedCount());
    EXPECT_EQ(Value("One"), storedProfile(0)["title"]);
    EXPECT_EQ(Value("Changed"), storedProfile(1)["title"]);
    EXPECT_EQ("success", remove(profile(one)));
    EXPECT_EQ(nullptr, stored(one));
    ASSERT_NE(nullptr, stored(other));
    EXPECT_EQ("Changed", stored(other)->title());
}

TEST_F(StoreChange, profileWithoutIdentifier_isNotAdded) {
    EXPECT_THAT(add(profile("")), HasSubstr("identifier"));
    EXPECT_FALSE(phone_.files->exists(path_));
}

TEST_F(StoreChange, nilRecord_fails) {
    EXPECT_THAT(add(nullptr), HasSubstr("nil"));
    EXPECT_THAT(update(nullptr), HasSubstr("nil"));
    EXPECT_THAT(remove(nullptr), HasSubstr("nil"));
    EXPECT_FALSE(phone_.files->exists(path_));
}

TEST_F(StoreChange, profileOfAnotherProcess_isKept) {
    add(profile("A"));
    const auto mine = required(stored("A"));
    putFile(fileOf({profile("A")->storedValues(), profile("X", "theirs")->storedValues()}));
    mine->setTitle("mine");
    EXPECT_EQ("success", update(mine));
    EXPECT_EQ(Value("mine"), storedProfile(0)["title"]);
    EXPECT_EQ(Value("theirs"), storedProfile(1)["title"]);
    EXPECT_EQ("theirs", required(stored("X"))->title());
}

TEST_F(StoreChange, profileDeletedByAnotherProcess_isNotUpdated) {
    add(profile("A"));
    const auto mine = stored("A");
    putFile(fileOf({}));
    EXPECT_THAT(update(mine), HasSubstr("deleted"));
    EXPECT_EQ(0U, storedCount());
}

TEST_F(StoreChange, fileThatWasRemoved_isBegunAnewByAnAddition) {
    add(profile("A"));
    const auto record = stored("A");
    ASSERT_TRUE(phone_.files->remove(path_));
    EXPECT_THAT(update(record), HasSubstr("deleted"));
    EXPECT_EQ("success", add(profile("B")));
    EXPECT_EQ(fileOf({profile("B")->storedValues()}), file());
}

TEST_F(StoreChange, lockNotHad_fails) {
    add(profile("A"));
    const auto before = rawFile();
    phone_.files->failLocks(true);
    const auto record = required(stored("A"));
    record->setTitle("x");
    EXPECT_THAT(update(record), AllOf(HasSubstr("locked"), HasSubstr(path_)));
    EXPECT_THAT(add(profile("B")), HasSubstr("locked"));
    EXPECT_THAT(remove(record), HasSubstr("locked"));
    EXPECT_EQ(before, rawFile());
    EXPECT_EQ("x", required(stored("A"))->title());
}

TEST_F(StoreChange, failedWrite_keepsFileStoreAndRecord) {
    add(profile("A", "old"));
    const auto record = required(stored("A"));
    record->setTitle("new");
    const auto before = rawFile();
    phone_.files->failWrites("No space left on device");
    EXPECT_THAT(update(record), AllOf(HasSubstr(path_), HasSubstr("No space left on device")));
    EXPECT_EQ(before, rawFile());
    EXPECT_EQ(record, stored("A"));
    EXPECT_EQ("new", record->title());
    phone_.files->failWrites("");
    EXPECT_EQ("success", update(record));
    EXPECT_EQ("new", required(stored("A"))->title());
}

TEST_F(StoreChange, callbackNotificationAndBroadcast_comeInThisOrder) {
    struct Case {
        Operation operation;
        std::string name;
    };
    for (const auto& [operation, name] :
         {Case{&QXProfilesManager::addProfile_success_failure, "com.velmora.ProfileAddedNotification"},
          Case{&QXProfilesManager::updateProfile_success_failure, "com.velmora.ProfileChangedNotification"},
          Case{&QXProfilesManager::deleteProfile_success_failure,
               "com.velmora.ProfileDeletedNotification"}}) {
        std::vector<std::string> heard;
        const auto listener = std::make_shared<Listener>(heard);
        listener->listen();
        phone_.takeEvents();
        (store_.get()->*operation)(
            profile("A"), [&] { heard.emplace_back("success"); },
            [&](const auto&) { heard.emplace_back("failure"); });
        EXPECT_THAT(heard, IsEmpty()) << "nothing is called back before the call returns";
        phone_.drain();
        EXPECT_THAT(heard, ElementsAre("success", name));
        std::vector<std::string> order;
        for (const auto& event : phone_.takeEvents()) order.push_back(event.at("event").stringOr());
        EXPECT_THAT(order, ElementsAre("store", "write", "local", "darwin", "darwinReceived"));
        EXPECT_THAT(phone_.notifications->takePosted(), ElementsAre(name));
    }
}

TEST_F(StoreChange, failure_postsNothing) {
    std::vector<std::string> heard;
    const auto listener = std::make_shared<Listener>(heard);
    listener->listen();
    EXPECT_THAT(update(profile("A")), HasSubstr("\"A\""));
    EXPECT_THAT(heard, IsEmpty());
    EXPECT_THAT(phone_.notifications->takePosted(), IsEmpty());
}

TEST_F(StoreChange, callbacks_mayBeLeftOut) {
    store_->addProfile_success_failure(profile("A"), nullptr, nullptr);
    store_->updateProfile_success_failure(profile("missing"), nullptr, nullptr);
    phone_.drain();
    EXPECT_NE(nullptr, stored("A"));
    EXPECT_THAT(phone_.notifications->takePosted(), ElementsAre("com.velmora.ProfileAddedNotification"));
}

TEST_F(StoreChange, successCallback_findsTheNewStateAndMayCallTheStore) {
    std::string title;
    store_->addProfile_success_failure(
        profile("A", "Work"),
        [&] {
            title = required(stored("A"))->title();
            store_->addProfile_success_failure(profile("B"), nullptr, nullptr);
        },
        nullptr);
    phone_.drain();
    EXPECT_EQ("Work", title);
    EXPECT_EQ(2U, storedCount());
}

TEST_F(StoreChange, calls_areInTheJournalWithTheirOutcome) {
    phone_.takeEvents();
    add(profile("A"));
    update(profile("B"));
    remove(nullptr);
    store_->reloadProfiles();
    remove(profile("A"));
    const auto event = [](const char* call, Value identifier, bool ok) {
        return Dictionary{
            {"event", "store"}, {"call", call}, {"identifier", std::move(identifier)}, {"ok", ok}};
    };
    EXPECT_THAT(
        phone_.takeEvents("store"),
        ElementsAre(event("add", "A", true), event("update", "B", false), event("delete", Value(), false),
                    event("reload", Value(), true), event("delete", "A", true)));
}

TEST_F(StoreChange, unknownKeys_areKeptInFileAndRecord) {
    Dictionary theirs = profile("A")->storedValues();
    const Dictionary unknown{
        {"colour", "red"},
        {"when", platform::Date{1.5}},
        {"nested", Array{Dictionary{{"deep", Array{1, 2.5, "ü"}}}, platform::Data{0, 255}}},
        {"newProfile", true},
        {"big", UINT64_MAX}};
    theirs.merge(unknown);
    putFile(fileOf({theirs, "no profile", 7}, {{"owner", Dictionary{{"name", "engine"}}}, {"serial", 12}}));
    for (int i = 0; i < 100; ++i) {
        const auto record = required(stored("A"));
        record->setTitle("turn " + std::to_string(i));
        ASSERT_EQ("success", update(record));
    }
    EXPECT_EQ("success", add(profile("B")));
    EXPECT_EQ("success", remove(profile("B")));
    theirs.insert_or_assign("title", "turn 99");
    EXPECT_EQ(fileOf({theirs, "no profile", 7}, {{"owner", Dictionary{{"name", "engine"}}}, {"serial", 12}}),
              file());
}

TEST_F(StoreChange, entriesThatAreNoProfiles_areLeftAlone) {
    const Dictionary nameless{{"title", "nameless"}};
    const Dictionary first{{"identifier", "A"}, {"title", "first"}};
    const Dictionary second{{"identifier", "A"}, {"title", "second"}};
    const Dictionary numbered{{"identifier", 5}};
    putFile(fileOf({nameless, first, Array{}, second, numbered, Dictionary{{"identifier", ""}}}));
    EXPECT_THAT(identifiersOf(store_->enabledProfiles()), ElementsAre("A"));
    EXPECT_EQ("first", required(stored("A"))->title());
    EXPECT_EQ(nullptr, stored(""));
    EXPECT_THAT(phone_.log->lines(), ElementsAre(AllOf(HasSubstr(path_), HasSubstr("5 entries"))));

    const auto record = required(stored("A"));
    record->setTitle("changed");
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value("changed"), storedProfile(1)["title"]);
    EXPECT_EQ(Value(second), storedProfile(3));
    EXPECT_EQ("changed", required(stored("A"))->title());

    EXPECT_EQ("success", remove(record));
    EXPECT_EQ(nullptr, stored("A")) << "the second one would be the deleted profile come back";
    EXPECT_EQ(fileOf({nameless, Array{}, numbered, Dictionary{{"identifier", ""}}}), file());
}

TEST_F(StoreChange, xmlFile_isTakenOver) {
    Dictionary theirs = profile("A", "Work")->storedValues();
    theirs.insert_or_assign("ours", false);
    phone_.files->put(path_, bytesOf(fileOf({theirs}, {{"more", "x"}}), platform::PropertyListFormat::XML));
    EXPECT_EQ("success", add(profile("B")));
    EXPECT_EQ(fileOf({theirs, profile("B")->storedValues()}, {{"more", "x"}}), file());
}

TEST_F(StoreChange, integersForBooleansAndReals_becomeWhatTheyStandFor) {
    putFile(fileOf({Dictionary{{"identifier", "A"}, {"enabled", 0}, {"ringerVolume", 1}}}));
    const auto record = required(stored("A"));
    EXPECT_FALSE(record->isEnabled());
    EXPECT_EQ(1.0, record->ringerVolume());
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(Value(record->storedValues()), storedProfile(0));
}

TEST_F(StoreChange, manyChanges_doNotLetTheFileGrow) {
    add(profile("A"));
    add(profile("B"));
    const std::string longTitle(3000, 'x');
    for (int i = 0; i < 200; ++i) {
        const auto record = required(stored("A"));
        record->setTitle(longTitle + std::to_string(i));
        ASSERT_EQ("success", update(record));
        ASSERT_EQ("success", add(profile("C" + std::to_string(i))));
        ASSERT_EQ("success", remove(profile("C" + std::to_string(i))));
    }
    EXPECT_EQ(2U, storedCount());
    const std::size_t needed = bytesOf(file()).size();
    EXPECT_LT(rawFile().size(), 3 * needed + 3 * 4096);
}

TEST_F(StoreChange, threadsAtOnce_loseNothing) {
    constexpr int threads = 4;
    constexpr int each = 25;
    std::atomic<int> failures = 0;
    std::vector<std::thread> writers;
    for (int thread = 0; thread < threads; ++thread) {
        writers.emplace_back([&, thread] {
            for (int i = 0; i < each; ++i) {
                const auto record = profile(std::to_string(thread) + "-" + std::to_string(i));
                const auto failed = [&](const auto&) { ++failures; };
                store_->addProfile_success_failure(record, nullptr, failed);
                record->setTitle("changed");
                store_->updateProfile_success_failure(record, nullptr, failed);
                store_->reloadProfiles();
                if (!store_->profileByIdentifier_shouldReload(record->identifier(), false)) ++failures;
                static_cast<void>(store_->enabledProfiles());
            }
        });
    }
    for (auto& writer : writers) writer.join();
    phone_.drain();
    EXPECT_EQ(0, failures);
    ASSERT_EQ(static_cast<std::size_t>(threads * each), storedCount());
    for (const auto& record : store_->enabledProfiles()) EXPECT_EQ("changed", record->title());
}

TEST_F(StoreChange, callFromAnotherThread_callsBackOnTheMainThread) {
    const std::thread::id main = std::this_thread::get_id();
    std::vector<std::thread::id> called;
    std::thread([&] {
        store_->addProfile_success_failure(
            profile("A"), [&] { called.push_back(std::this_thread::get_id()); }, nullptr);
        store_->deleteProfile_success_failure(
            profile("B"), nullptr, [&](const auto&) { called.push_back(std::this_thread::get_id()); });
    }).join();
    EXPECT_THAT(called, IsEmpty());
    phone_.drain();
    EXPECT_THAT(called, ElementsAre(main, main));
}

TEST_F(StoreChange, oneChange_readsNothingAndWritesOnce) {
    add(profile("A"));
    const int reads = phone_.files->reads(path_);
    const int writes = phone_.files->writes(path_);
    EXPECT_EQ("success", update(stored("A")));
    EXPECT_EQ(reads, phone_.files->reads(path_));
    EXPECT_EQ(writes + 1, phone_.files->writes(path_));
}

}  // namespace
