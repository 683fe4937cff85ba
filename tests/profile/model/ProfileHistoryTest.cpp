// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <set>

#include "platform/foundation/Calendar.h"
#include "profile/model/ProfileHistory.h"
#include "shell/base/NotificationNames.h"
#include "tests/profile/model/StoreFixture.h"

namespace {

using doubles::errorOf;
using doubles::required;
using platform::Data;
using platform::Dictionary;
using platform::Missing;
using platform::Value;
using quietrix::ProfileGeneration;
using quietrix::ProfileHistoryEntry;
using quietrix::ProfilesDifference;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace history = quietrix::ProfileHistory;

class ProfileHistoryTest : public StoreFixture {
  protected:
    /// The numbers that are kept, the newest first.
    static std::vector<std::uint64_t> numbers() {
        std::vector<std::uint64_t> numbers;
        const auto generations = *required(history::generations());
        for (const ProfileGeneration& each : generations) numbers.push_back(each.number);
        return numbers;
    }
    static std::vector<ProfileHistoryEntry> entries() { return *required(history::entries()); }
    static std::vector<std::string> identifiersIn(const std::vector<ProfilesDifference::Profile>& profiles) {
        std::vector<std::string> identifiers;
        for (const auto& each : profiles) identifiers.push_back(each.identifier);
        return identifiers;
    }
    std::vector<std::string> identifiers() {
        store_->reloadProfiles();
        return identifiersOf(store_->enabledProfiles());
    }
    std::unique_ptr<platform::FileHistory> folder() {
        return *required(phone_.files->openHistory(path_, Missing::Make));
    }
    std::string nameOf(std::uint64_t number) { return required(history::generationOfNumber(number))->name; }
    std::string rename(const std::string& title) {
        const auto record = required(stored("A"));
        record->setTitle(title);
        return update(record);
    }
    /// Writes over what is in the file, as an editor does that does not replace it.
    void writeInPlace(const Data& bytes) {
        ASSERT_TRUE(phone_.files->write(path_, bytes, platform::Write::InPlace));
    }
    std::vector<std::string> posted() {
        phone_.drain();
        std::vector<std::string> names;
        for (const Dictionary& event : phone_.takeEvents("darwin"))
            names.push_back(event.at("name").stringOr());
        return names;
    }
};

TEST_F(ProfileHistoryTest, eachChange_isKeptUnderTheNextNumber) {
    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_EQ("success", add(profile("A", "Work")));
    EXPECT_EQ("success", add(profile("B", "Home")));
    EXPECT_EQ("success", rename("Office"));
    EXPECT_EQ("success", remove(stored("B")));
    const auto all = entries();
    ASSERT_THAT(all, SizeIs(4));
    using Profile = ProfilesDifference::Profile;
    EXPECT_EQ(all[0].difference, (ProfilesDifference{.removed = {Profile{"B", "Home"}}, .unchanged = 1}));
    EXPECT_EQ(all[1].difference,
              (ProfilesDifference{.changed = {Profile{"A", "Office", {{"title", "Work", "Office"}}}},
                                  .unchanged = 1}));
    EXPECT_EQ(all[2].difference, (ProfilesDifference{.added = {Profile{"B", "Home"}}, .unchanged = 1}));
    EXPECT_EQ(all[3].difference, (ProfilesDifference{.added = {Profile{"A", "Work"}}}));
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i].number, 4 - i);
        EXPECT_EQ(all[i].isPresent, i == 0);
        EXPECT_FALSE(all[i].isAbsence);
        EXPECT_EQ(all[i].problem, "");
        EXPECT_EQ(all[i].time, platform::dateNow());
    }
    EXPECT_THAT(phone_.log->lines(), IsEmpty());
}

TEST_F(ProfileHistoryTest, aStateThatIsKeptAlready_isKeptOnce) {
    EXPECT_EQ("success", add(profile("A")));
    EXPECT_EQ("success", rename("x"));
    EXPECT_EQ(0, phone_.files->reads(path_)) << "what was written need not be read";
    entries();
    entries();
    // Somebody touches the file, or puts the very same one in its place, as a copied root has it.
    writeInPlace(rawFile());
    phone_.files->put(path_, rawFile());
    entries();
    const auto another = std::make_shared<quietrix::QXProfilesManager>();
    another->reloadProfiles();
    EXPECT_EQ(numbers(), (std::vector<std::uint64_t>{2, 1}));
}

TEST_F(ProfileHistoryTest, restoring_isAChangeThatCanBeTakenBack) {
    EXPECT_EQ("success", add(profile("A", "Work")));
    EXPECT_EQ("success", add(profile("B")));
    EXPECT_EQ("success", rename("Office"));
    const Data three = rawFile();
    EXPECT_EQ("success", remove(stored("A")));
    EXPECT_EQ("success", add(profile("C")));
    phone_.drain();
    phone_.takeEvents();

    auto restored = *required(store_->restoreGeneration(3));
    EXPECT_FALSE(restored.wasPresent);
    EXPECT_THAT(identifiersIn(restored.difference.added), ElementsAre("A"));
    EXPECT_THAT(identifiersIn(restored.difference.removed), ElementsAre("C"));
    EXPECT_THAT(restored.difference.changed, IsEmpty());
    EXPECT_EQ(1U, restored.difference.unchanged);
    EXPECT_EQ(three, rawFile());
    EXPECT_EQ("Office", required(stored("A"))->title());
    EXPECT_EQ(posted(), (std::vector<std::string>{std::string(quietrix::ProfileAddedNotification),
                                                  std::string(quietrix::ProfileDeletedNotification)}));
    EXPECT_EQ(numbers(), (std::vector<std::uint64_t>{6, 5, 4, 3, 2, 1}));

    EXPECT_FALSE(required(store_->restoreGeneration(5))->wasPresent);
    EXPECT_THAT(identifiers(), ElementsAre("B", "C"));
    restored = *required(store_->restoreGeneration(1));
    EXPECT_THAT(identifiers(), ElementsAre("A"));
    EXPECT_EQ("Work", required(stored("A"))->title());
    posted();
    restored = *required(store_->restoreGeneration(3));
    EXPECT_EQ(restored.difference.changed,
              (std::vector<ProfilesDifference::Profile>{{"A", "Office", {{"title", "Work", "Office"}}}}));
    EXPECT_EQ(posted(), (std::vector<std::string>{std::string(quietrix::ProfileAddedNotification),
                                                  std::string(quietrix::ProfileChangedNotification)}));
    EXPECT_EQ(9U, numbers().front());
}

TEST_F(ProfileHistoryTest, restoringThePresentState_changesNothing) {
    EXPECT_EQ("success", add(profile("A")));
    EXPECT_EQ("success", rename("x"));
    EXPECT_FALSE(required(store_->restoreGeneration(1))->wasPresent);
    phone_.drain();
    const auto before = phone_.files->stamp(path_);
    phone_.takeEvents();
    for (const std::uint64_t number : {3U, 1U}) {
        const auto restored = *required(store_->restoreGeneration(number));
        EXPECT_TRUE(restored.wasPresent) << number;
        EXPECT_TRUE(restored.difference.isEmpty());
    }
    EXPECT_EQ(before, phone_.files->stamp(path_));
    EXPECT_THAT(posted(), IsEmpty());
    EXPECT_EQ(numbers(), (std::vector<std::uint64_t>{3, 2, 1}));
}

TEST_F(ProfileHistoryTest, numberThatIsNotThere_isNamed) {
    EXPECT_EQ(errorOf(store_->restoreGeneration(1)),
              "There is no state of the number 1 in the history of \"" + path_ + "\", which is empty.");
    EXPECT_EQ("success", add(profile("A")));
    EXPECT_EQ("success", rename("x"));
    EXPECT_EQ(
        errorOf(store_->restoreGeneration(3)),
        "There is no state of the number 3 in the history of \"" + path_ + "\"; it has 2, from 1 to 2.");
    EXPECT_FALSE(store_->restoreGeneration(0));
    EXPECT_EQ("x", required(stored("A"))->title());
}

TEST_F(ProfileHistoryTest, whatOthersWrote_isKeptBeforeAChangeReplacesIt) {
    putFile(fileOf({profile("A", "theirs")->storedValues()}));
    const Data theirs = rawFile();
    const auto record = required(stored("A"));
    record->setTitle("ours");
    EXPECT_EQ("success", update(record));
    EXPECT_EQ(numbers(), (std::vector<std::uint64_t>{2, 1}));
    putFile(fileOf({profile("A", "again theirs")->storedValues()}));
    EXPECT_EQ("success", add(profile("B")));
    EXPECT_EQ(numbers(), (std::vector<std::uint64_t>{4, 3, 2, 1}));
    ASSERT_TRUE(store_->restoreGeneration(3));
    EXPECT_EQ("again theirs", required(stored("A"))->title());
    ASSERT_TRUE(store_->restoreGeneration(1));
    EXPECT_EQ(theirs, rawFile());
}

TEST_F(ProfileHistoryTest, whatOthersWroteOverTheFileItself_isKeptTooAndTheStateBeforeIsLost) {
    EXPECT_EQ("success", add(profile("A", "first")));
    EXPECT_EQ("success", rename("second"));
    writeInPlace(bytesOf(fileOf({profile("A", "over it")->storedValues()})));
    EXPECT_EQ("success", rename("third"));
    const auto all = entries();
    ASSERT_THAT(all, SizeIs(4));
    EXPECT_THAT(all[2].problem, AllOf(HasSubstr("state 2"), HasSubstr(path_), HasSubstr("written over it")));
    EXPECT_FALSE(all[2].difference);
    EXPECT_EQ(all[1].problem, "");
    EXPECT_THAT(identifiersIn(required(all[1].difference)->changed), ElementsAre("A"));
    const Data before = rawFile();
    EXPECT_EQ(errorOf(store_->restoreGeneration(2)), all[2].problem);
    EXPECT_EQ(before, rawFile());
    ASSERT_TRUE(store_->restoreGeneration(3));
    EXPECT_EQ("over it", required(stored("A"))->title());
    ASSERT_TRUE(store_->restoreGeneration(1));
    EXPECT_EQ("first", required(stored("A"))->title());
}

TEST_F(ProfileHistoryTest, looking_keepsWhatOthersWrote) {
    putFile(fileOf({profile("A", "theirs")->storedValues()}));
    const auto found = entries();
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].number, 1U);
    putFile(fileOf({}));
    EXPECT_THAT(entries(), SizeIs(2));
    ASSERT_TRUE(store_->restoreGeneration(1));
    EXPECT_EQ("theirs", required(stored("A"))->title());
}

TEST_F(ProfileHistoryTest, recordsStayWhatTheyAre_whenAStateThatWasFoundIsKeptAndTheWriteFails) {
    putFile(fileOf({profile("A", "theirs")->storedValues()}));
    const auto record = required(stored("A"));
    record->setTitle("ours");
    phone_.files->failWrites("No space left on device");
    EXPECT_THAT(update(record), HasSubstr("No space left"));
    EXPECT_EQ(numbers(), std::vector<std::uint64_t>{1});
    EXPECT_EQ(record, stored("A")) << "one name more is no other file";
    EXPECT_EQ(1, phone_.files->reads(path_) - 1) << "once for the store and once for the history";
}

TEST_F(ProfileHistoryTest, fileThatIsGone_isAStateOfItsOwn) {
    EXPECT_EQ("success", add(profile("A")));
    EXPECT_EQ("success", add(profile("B")));
    ASSERT_TRUE(history::removeProfilesFile());
    EXPECT_FALSE(phone_.files->exists(path_));
    auto all = entries();
    ASSERT_THAT(all, SizeIs(3));
    EXPECT_TRUE(all[0].isPresent);
    EXPECT_TRUE(all[0].isAbsence);
    EXPECT_THAT(identifiersIn(required(all[0].difference)->removed), ElementsAre("A", "B"));
    ASSERT_TRUE(store_->restoreGeneration(2));
    EXPECT_THAT(identifiers(), ElementsAre("A", "B"));
    posted();
    // And back to no file.
    const auto restored = *required(store_->restoreGeneration(3));
    EXPECT_FALSE(phone_.files->exists(path_));
    EXPECT_THAT(restored.difference.removed, SizeIs(2));
    EXPECT_EQ(posted(), std::vector<std::string>{std::string(quietrix::ProfileDeletedNotification)});
    EXPECT_TRUE(required(store_->restoreGeneration(5))->wasPresent);
    EXPECT_EQ("success", add(profile("C")));
    EXPECT_EQ(6U, numbers().front());
}

TEST_F(ProfileHistoryTest, removal_keepsWhatOthersWroteLast) {
    putFile(fileOf({profile("A", "theirs")->storedValues()}));
    ASSERT_TRUE(history::removeProfilesFile());
    EXPECT_EQ(numbers(), (std::vector<std::uint64_t>{2, 1}));
    ASSERT_TRUE(store_->restoreGeneration(1));
    EXPECT_EQ("theirs", required(stored("A"))->title());
    EXPECT_FALSE(history::removeProfilesFile() && history::removeProfilesFile());
}

TEST_F(ProfileHistoryTest, fileThatCannotBeUsed_isKeptAndCanBeReplacedByAnEarlierState) {
    EXPECT_EQ("success", add(profile("A")));
    phone_.files->put(path_, "damaged");
    EXPECT_THAT(add(profile("B")), HasSubstr(path_));
    const auto all = entries();
    ASSERT_THAT(all, SizeIs(2));
    EXPECT_THAT(all[0].problem, AllOf(HasSubstr("state 2"), HasSubstr("cannot be used")));
    EXPECT_FALSE(store_->restoreGeneration(2));
    EXPECT_THAT(identifiersIn(required(store_->restoreGeneration(1))->difference.added), ElementsAre("A"));
    EXPECT_THAT(identifiers(), ElementsAre("A"));
    EXPECT_EQ(*required(folder()->read(nameOf(2))), (Data{'d', 'a', 'm', 'a', 'g', 'e', 'd'}));

    // Nothing is left of it elsewhere, so it is not replaced before it is kept.
    phone_.files->put(path_, "more damage");
    phone_.files->failHistories("No space left on device");
    EXPECT_THAT(errorOf(store_->restoreGeneration(1)), HasSubstr("No space left"));
    EXPECT_EQ(rawFile().size(), std::string("more damage").size());
}

TEST_F(ProfileHistoryTest, whatCannotBeKept_isChangedAllTheSameAndTheHistorySaysWhy) {
    const std::string why =
        "The file \"" + path_ + "\" could not be kept in its history: No space left on device.";
    EXPECT_EQ("success", add(profile("A")));
    phone_.files->failHistories("No space left on device");
    EXPECT_EQ("success", rename("x"));
    EXPECT_EQ("success", rename("y"));
    EXPECT_THAT(phone_.log->lines(), ElementsAre(why));
    const auto all = entries();
    ASSERT_THAT(all, SizeIs(2));
    EXPECT_TRUE(all[0].isPresent);
    EXPECT_EQ(all[0].number, std::nullopt);
    EXPECT_EQ(all[0].problem, why);
    EXPECT_THAT(identifiersIn(required(all[0].difference)->changed), ElementsAre("A"));
    EXPECT_FALSE(all[1].isPresent);
    phone_.files->failHistories("");
    EXPECT_EQ("success", rename("z"));
    EXPECT_EQ(numbers(), (std::vector<std::uint64_t>{3, 2, 1})) << "y was found, z written";
    phone_.files->failHistories("Read-only file system");
    EXPECT_EQ("success", rename("last"));
    EXPECT_THAT(phone_.log->lines(), SizeIs(2));
}

TEST_F(ProfileHistoryTest, otherFilesInTheFolder_areLeftAlone) {
    EXPECT_EQ("success", add(profile("A")));
    const std::set<std::string> foreign{"notes.txt",
                                        "0000000000-0000000000001-0123456789abcdef.plist",
                                        "9-1-0123456789abcdef.plist",
                                        "0000000009-x-0123456789abcdef.plist",
                                        "0000000009-1-0123456789ABCDEFG.plist",
                                        "0000000009-1-absent",
                                        "0000000009--absent.plist",
                                        "00000000-9-1-absent.plist",
                                        "-1",
                                        "0000000009.plist"};
    for (const std::string& name : foreign) ASSERT_TRUE(folder()->mark(name));
    for (int i = 0; i < 60; ++i) EXPECT_EQ("success", rename(std::to_string(i)));
    EXPECT_EQ(61U, numbers().front());
    const auto names = *required(folder()->names());
    for (const std::string& name : foreign) EXPECT_THAT(names, testing::Contains(name));
}

TEST_F(ProfileHistoryTest, numbersThatAreUsedUp_areSaid) {
    EXPECT_EQ("success", add(profile("A")));
    ASSERT_TRUE(folder()->mark("9999999999-0000000000001-0123456789abcdef.plist"));
    EXPECT_EQ("success", rename("x"));
    EXPECT_THAT(phone_.log->lines(), ElementsAre(HasSubstr("there is no number left")));
}

TEST_F(ProfileHistoryTest, thinning_leavesTheLatestAndTheLastOfEachDay) {
    constexpr double day = 86400;
    EXPECT_EQ("success", add(profile("A")));
    std::map<int, std::uint64_t> lastOfDay;
    std::uint64_t number = 1;
    for (int today = 0; today < 40; ++today) {
        for (int change = 0; change < 5; ++change) {
            EXPECT_EQ("success", rename(std::to_string(number)));
            lastOfDay[today] = ++number;
        }
        phone_.advance(day);
    }
    std::set<std::uint64_t> expected;
    for (std::uint64_t latest = number; latest > number - 50; --latest) expected.insert(latest);
    // Ten days have their changes among the latest; 30 days before the newest is the day 9.
    for (int each = 9; each < 30; ++each) expected.insert(lastOfDay[each]);
    const auto kept = numbers();
    EXPECT_EQ(std::set<std::uint64_t>(kept.begin(), kept.end()), expected);
    EXPECT_FALSE(entries().back().difference) << "what was before is not known any more";
    ASSERT_TRUE(store_->restoreGeneration(lastOfDay[9]));
    EXPECT_EQ(std::to_string(lastOfDay[9] - 1), required(stored("A"))->title());
}

TEST_F(ProfileHistoryTest, thinning_hasABoundWhateverTheClockDoes) {
    EXPECT_EQ("success", add(profile("A")));
    // As if each had been made a day before the one before it.
    const auto states = folder();
    const auto nameFor = [](int number, long long milliseconds) {
        std::string digits = std::to_string(number);
        digits.insert(0, 10 - digits.size(), '0');
        return digits + "-" + std::to_string(milliseconds) + "-0123456789abcdef.plist";
    };
    constexpr long long inTheFuture = 4'000'000'000'000;
    for (int number = 2; number <= 200; ++number)
        ASSERT_TRUE(states->mark(nameFor(number, inTheFuture - number * 86'400'000LL)));
    EXPECT_EQ("success", rename("now"));
    const auto kept = numbers();
    EXPECT_EQ(201U, kept.front());
    EXPECT_EQ(80U, kept.size());
}

/// Lets a test do something between the look at the folder and the keeping.
class InterruptedFiles : public doubles::MemoryFileSystem {
  public:
    std::function<void()> interruption;

    platform::Result<std::unique_ptr<platform::FileHistory>> openHistory(std::string_view path,
                                                                         Missing missing) override {
        auto history = MemoryFileSystem::openHistory(path, missing);
        if (!history || !*history) return history;
        return std::make_unique<History>(*std::move(history), *this);
    }

  private:
    class History : public platform::FileHistory {
      public:
        History(std::unique_ptr<FileHistory> history, InterruptedFiles& files)
            : history_(std::move(history)), files_(files) {}
        platform::Result<std::vector<std::string>> names() const override {
            auto names = history_->names();
            if (const auto now = std::exchange(files_.interruption, nullptr)) now();
            return names;
        }
        platform::Result<platform::FileStamp> stamp(const std::string& name) const override {
            return history_->stamp(name);
        }
        platform::Result<Data> read(const std::string& name) const override { return history_->read(name); }
        platform::Result<Kept> keep(const std::string& name) override { return history_->keep(name); }
        platform::Result<Kept> mark(const std::string& name) override { return history_->mark(name); }
        platform::Result<void> remove(const std::string& name) override { return history_->remove(name); }

      private:
        std::unique_ptr<FileHistory> history_;
        InterruptedFiles& files_;
    };
};

class InterruptedHistoryTest : public ProfileHistoryTest {
  protected:
    InterruptedHistoryTest() {
        phone_.files = files_;
        phone_.install();
    }
    std::shared_ptr<InterruptedFiles> files_ = std::make_shared<InterruptedFiles>();
};

TEST_F(InterruptedHistoryTest, numberThatAnotherTakes_isPassedOver) {
    EXPECT_EQ("success", add(profile("A")));
    putFile(fileOf({profile("A", "found")->storedValues()}));
    // Another process that looks keeps the same state first, then makes a change of its own.
    files_->interruption = [&] {
        EXPECT_EQ(2U, required(*required(history::keep()))->number);
        putFile(fileOf({profile("A", "changed")->storedValues()}));
        EXPECT_EQ(3U, required(*required(history::keep()))->number);
    };
    EXPECT_EQ(3U, required(*required(history::keep()))->number) << "what is there by then is kept";
    EXPECT_EQ(numbers(), (std::vector<std::uint64_t>{3, 2, 1}));
    for (const ProfileHistoryEntry& each : entries()) EXPECT_EQ(each.problem, "");
}

TEST_F(InterruptedHistoryTest, numberOfAnAbsence_isNotGivenToTheFileThatCameMeanwhile) {
    EXPECT_EQ("success", add(profile("A")));
    ASSERT_TRUE(phone_.files->remove(path_));
    // Somebody who looks finds no file; before it is marked, a change puts one there.
    files_->interruption = [&] {
        ASSERT_TRUE(folder()->mark("0000000002-0000000000001-0123456789abcdef.plist"));
    };
    EXPECT_EQ(3U, required(*required(history::keep()))->number);
    EXPECT_EQ(numbers(), (std::vector<std::uint64_t>{3, 2, 1}));
}

TEST_F(InterruptedHistoryTest, fileThatIsReplacedMeanwhile_isNotKeptUnderTheOldOnesName) {
    EXPECT_EQ("success", add(profile("A")));
    putFile(fileOf({profile("A", "found")->storedValues()}));
    files_->interruption = [&] { putFile(fileOf({profile("A", "replaced")->storedValues()})); };
    EXPECT_EQ(2U, required(*required(history::keep()))->number);
    const auto all = entries();
    ASSERT_THAT(all, SizeIs(2));
    EXPECT_EQ(all[0].problem, "");
    ASSERT_TRUE(store_->restoreGeneration(1));
    ASSERT_TRUE(store_->restoreGeneration(2));
    EXPECT_EQ("replaced", required(stored("A"))->title());
}

}  // namespace
