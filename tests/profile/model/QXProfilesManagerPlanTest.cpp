// SPDX-License-Identifier: MIT
// Several changes as one.
#include <gmock/gmock.h>

#include "tests/profile/model/StoreFixture.h"

namespace {

using quietrix::QXProfilesManager;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Change = QXProfilesManager::Change;
using Kind = Change::Kind;
using Records = QXProfilesManager::Records;

class StorePlan : public StoreFixture {
  protected:
    StorePlan() {
        putFile(fileOf({record("A", "a"), record("B", "b"), record("C", "c")}, {{"other", "kept"}}));
    }
    static platform::Value record(const std::string& identifier, const std::string& title) {
        return Values{{"identifier", identifier}, {"title", title}, {"engine", "kept"}};
    }

    std::string change(const QXProfilesManager::Plan& plan) {
        std::string outcome = "no callback";
        store_->changeProfiles(
            plan, [&] { outcome = "success"; },
            [&](const platform::Error& error) { outcome = error.localizedDescription; });
        phone_.drain();
        return outcome;
    }
    std::vector<std::string> announced() {
        std::vector<std::string> names;
        for (const auto& event : phone_.takeEvents("darwin")) names.push_back(event.at("name").stringOr());
        return names;
    }
    static std::vector<Change> titled(const Records& present, const std::string& title) {
        std::vector<Change> changes;
        for (const auto& each : present) {
            each->setTitle(title);
            changes.push_back({Kind::Update, each});
        }
        return changes;
    }
};

TEST_F(StorePlan, ofEveryKind_isOneWritingAndOneAnnouncementOfEach) {
    phone_.takeEvents();
    EXPECT_EQ("success", change([&](const Records& present) {
                  EXPECT_THAT(identifiersOf(present), ElementsAre("A", "B", "C"));
                  auto changes = titled({present[0]}, "new");
                  changes.push_back({Kind::Delete, present[1]});
                  changes.push_back({Kind::Add, profile("D", "d")});
                  changes.push_back({Kind::Add, profile("E", "e")});
                  return changes;
              }));
    const auto events = phone_.takeEvents();
    EXPECT_EQ(1, std::ranges::count(events, platform::Value("write"),
                                    [](const auto& event) { return event.at("event"); }));
    std::vector<std::string> names;
    for (const auto& event : events)
        if (event.at("event") == platform::Value("darwin")) names.push_back(event.at("name").stringOr());
    EXPECT_THAT(names,
                ElementsAre("com.velmora.ProfileAddedNotification", "com.velmora.ProfileChangedNotification",
                            "com.velmora.ProfileDeletedNotification"));
    ASSERT_EQ(4U, storedCount());
    EXPECT_EQ(platform::Value("new"), storedProfile(0)["title"]);
    EXPECT_EQ(platform::Value("kept"), storedProfile(0)["engine"]);
    EXPECT_EQ(platform::Value("kept"), file()["other"]);
    EXPECT_THAT(identifiersOf(store_->enabledProfiles()), ElementsAre("A", "C", "D", "E"));
}

TEST_F(StorePlan, withOneThatCannotBe_changesNothing) {
    const platform::Data before = rawFile();
    for (const Change& bad : {Change{Kind::Add, profile("B")}, Change{Kind::Update, profile("X")},
                              Change{Kind::Delete, profile("X")}, Change{Kind::Add, profile("")},
                              Change{Kind::Update, nullptr}}) {
        EXPECT_NE("success", change([&](const Records& present) {
                      auto changes = titled(present, "new");
                      changes.push_back(bad);
                      return changes;
                  }));
        EXPECT_EQ(before, rawFile());
        EXPECT_THAT(announced(), IsEmpty());
        EXPECT_EQ("a", doubles::required(stored("A"))->title());
    }
}

TEST_F(StorePlan, refusedByItself_failsWithItsReason) {
    const platform::Data before = rawFile();
    EXPECT_EQ("Not today.", change([](const Records&) { return platform::failure("Not today."); }));
    EXPECT_EQ(before, rawFile());
}

TEST_F(StorePlan, withoutChanges_writesAndAnnouncesNothing) {
    const auto stamp = phone_.files->stamp(path_);
    EXPECT_EQ("success", change([](const Records&) { return std::vector<Change>(); }));
    EXPECT_EQ(stamp, phone_.files->stamp(path_));
    EXPECT_THAT(announced(), IsEmpty());
}

TEST_F(StorePlan, seesWhatAnotherProcessWrote) {
    EXPECT_EQ(3U, store_->presentProfiles()->size());
    putFile(fileOf({record("Z", "z")}));
    EXPECT_EQ("success", change([&](const Records& present) { return titled(present, "new"); }));
    EXPECT_EQ(1U, storedCount());
    EXPECT_EQ("new", doubles::required(stored("Z"))->title());
}

TEST_F(StorePlan, recordsOfThePlan_areNotThoseThatAreHandedOut) {
    const auto handedOut = stored("A");
    EXPECT_NE("success", change([&](const Records& present) -> platform::Result<std::vector<Change>> {
                  titled(present, "new");
                  return platform::failure("x");
              }));
    EXPECT_EQ("a", handedOut->title());
    EXPECT_EQ(handedOut, stored("A"));
}

TEST_F(StorePlan, ofALaterChangeOfTheSameProfile_bothAreMade) {
    EXPECT_EQ("success", change([&](const Records& present) {
                  present[0]->setTitle("new");
                  const auto again = profile("A", "new");
                  again->setVibrate(false);
                  return std::vector<Change>{{Kind::Update, present[0]}, {Kind::Update, again}};
              }));
    EXPECT_EQ("new", doubles::required(stored("A"))->title());
    EXPECT_FALSE(stored("A")->vibrate());
}

TEST_F(StorePlan, onAFileThatCannotBeUsed_isNeverAsked) {
    phone_.files->put(path_, {'n', 'o'});
    EXPECT_THAT(change([](const Records&) {
                    ADD_FAILURE() << "The plan was asked.";
                    return std::vector<Change>();
                }),
                AllOf(HasSubstr(path_), HasSubstr("cannot be used")));
    EXPECT_FALSE(store_->presentProfiles());
}

TEST_F(StorePlan, presentProfiles_areInTheFilesOrderWhateverTheirState) {
    doubles::required(stored("B"))->setEnabled(false);
    EXPECT_EQ("success", update(stored("B")));
    EXPECT_THAT(identifiersOf(store_->presentProfiles().value()), ElementsAre("A", "B", "C"));
    EXPECT_EQ(store_->presentProfiles().value(), store_->presentProfiles().value());
}

}  // namespace
