// SPDX-License-Identifier: MIT
// The store on a real file system, shared with other processes.
#include <gmock/gmock.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <filesystem>
#include <functional>
#include <limits>
#include <random>
#include <set>
#include <thread>

#include "device/RootFileSystem.h"
#include "platform/foundation/Device.h"
#include "tests/doubles/TemporaryDirectory.h"
#include "tests/profile/model/StoreFixture.h"

namespace {

using doubles::required;

namespace fs = std::filesystem;
using testing::HasSubstr;

class StoreProcesses : public StoreFixture {
  protected:
    StoreProcesses() {
        host_ = root_.path() / fs::path(path_).relative_path();
        fs::create_directories(host_.parent_path());
        files_ = std::make_shared<device::RootFileSystem>(root_.path().string());
        platform::Device device = platform::Device::current();
        device.files = files_;
        platform::Device::install(device);
    }
    ~StoreProcesses() override {
        // Only a test that failed has left any running.
        for (const pid_t child : std::set<pid_t>(children_)) {
            kill(child, SIGKILL);
            waitFor(child);
        }
    }

    enum class Others { OnlyChange, GoBack };
    pid_t start(const std::string& prefix, int count, Others others = Others::OnlyChange) {
        std::string program = STORE_WRITER;
        std::string root = root_.path().string();
        std::string prefixArgument = prefix;
        std::string countArgument = std::to_string(count);
        std::string othersArgument = "others-go-back";
        char* arguments[] = {program.data(),
                             root.data(),
                             prefixArgument.data(),
                             countArgument.data(),
                             others == Others::GoBack ? othersArgument.data() : nullptr,
                             nullptr};
        pid_t child = -1;
        if (posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments, environ) != 0) return -1;
        children_.insert(child);
        return child;
    }
    int waitFor(pid_t child) {
        int status = -1;
        waitpid(child, &status, 0);
        children_.erase(child);
        return status;
    }
    /// The profiles in the file as a new store finds them; a file that cannot be read fails the test.
    std::set<std::string> readAnew() {
        const auto fresh = std::make_shared<quietrix::QXProfilesManager>();
        phone_.takeEvents();
        fresh->reloadProfiles();
        EXPECT_EQ(platform::Value(true), phone_.takeEvents("store").at(0).at("ok"));
        std::set<std::string> found;
        for (const auto& record : fresh->enabledProfiles()) found.insert(record->identifier());
        return found;
    }

    /// The change's outcome, tried again while the lock is not had in time: that may be on a busy machine,
    /// and then must have changed nothing.
    static std::string onceLocked(const std::function<std::string()>& change) {
        std::string outcome;
        do {
            outcome = change();
        } while (outcome.find("could not be locked within") != std::string::npos);
        return outcome;
    }
    /// Waits until the file is another than the one of that stamp; false when it stays the same.
    bool changesFrom(const platform::Result<std::optional<platform::FileStamp>>& stamp) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (files_->stamp(path_) == stamp) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            std::this_thread::yield();
        }
        return true;
    }

    testing_support::TemporaryDirectory root_;
    fs::path host_;
    std::set<pid_t> children_;
    std::shared_ptr<device::RootFileSystem> files_;
};

TEST_F(StoreProcesses, severalAtOnce_loseNothing) {
    constexpr int count = 200;
    const std::vector<pid_t> children{start("a", count), start("b", count)};
    for (int i = 0; i < count; ++i) {
        const auto mine = profile("m" + std::to_string(i));
        ASSERT_EQ("success", onceLocked([&] { return add(mine); }));
        if (i % 2 == 0) {
            ASSERT_EQ("success", onceLocked([&] { return remove(mine); }));
        }
    }
    for (const pid_t child : children) EXPECT_EQ(0, waitFor(child));
    store_->reloadProfiles();
    const auto profiles = store_->enabledProfiles();
    EXPECT_EQ(2U * count + count / 2, profiles.size());
    for (const auto& record : profiles) {
        const bool isMine = record->identifier().starts_with('m');
        EXPECT_EQ(isMine ? "" : "renamed", record->title()) << record->identifier();
    }
    EXPECT_EQ(2U * count + count / 2, readAnew().size());
}

TEST_F(StoreProcesses, killedAtAnyInstant_leavesAWholeFile) {
    std::mt19937 random(7);
    std::set<std::string> before;
    for (int round = 0; round < 40; ++round) {
        const auto stamp = files_->stamp(path_);
        const pid_t child = start("r" + std::to_string(round) + "-", 1000);
        ASSERT_GT(child, 0);
        // Every other one is let make a change first, however slow it is to start.
        if (round % 2 == 0) {
            ASSERT_TRUE(changesFrom(stamp));
        }
        // Not for a condition: the instant of the kill is what the test is about, anywhere from the process's
        // start to the midst of its changes.
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 40000));
        ASSERT_EQ(0, kill(child, SIGKILL));
        const int status = waitFor(child);
        ASSERT_TRUE(WIFSIGNALED(status)) << status;
        const std::set<std::string> after = readAnew();
        EXPECT_TRUE(std::ranges::includes(after, before)) << "round " << round;
        before = after;
    }
    EXPECT_GT(before.size(), 0U);
    // Those killed while they held the lock have not taken it with them.
    EXPECT_EQ("success", add(profile("last")));
}

TEST_F(StoreProcesses, changeOfAnotherProcess_isSeenByTheNextQuestion) {
    EXPECT_EQ(0, waitFor(start("x", 1)));
    EXPECT_EQ("renamed", required(stored("x0"))->title());
    EXPECT_EQ(0, waitFor(start("y", 1)));
    EXPECT_EQ("renamed", required(stored("y0"))->title());
}

TEST_F(StoreProcesses, symbolicLink_staysAndItsTargetChanges) {
    const fs::path elsewhere = root_ / "elsewhere/real.plist";
    fs::create_directories(elsewhere.parent_path());
    fs::create_symlink(elsewhere, host_);
    EXPECT_EQ("success", add(profile("A")));
    EXPECT_EQ("success", update(stored("A")));
    EXPECT_TRUE(fs::is_symlink(host_));
    EXPECT_TRUE(fs::is_regular_file(elsewhere));
    EXPECT_EQ(1U, readAnew().size());
}

TEST_F(StoreProcesses, lockHeldByAnother_failsInTime) {
    EXPECT_EQ("success", add(profile("A")));
    const auto held = files_->lockExclusively(path_, 1);
    ASSERT_TRUE(held);
    EXPECT_THAT(update(profile("A", "x")), testing::AllOf(HasSubstr(path_), HasSubstr("2 seconds")));
    EXPECT_EQ("", required(stored("A"))->title());
}

TEST_F(StoreProcesses, directoryInPlaceOfTheFile_isRefused) {
    fs::create_directories(host_ / "inside");
    EXPECT_THAT(add(profile("A")), HasSubstr(path_));
    EXPECT_TRUE(fs::is_directory(host_ / "inside"));
}

TEST_F(StoreProcesses, missingDirectory_failsWithThePath) {
    fs::remove_all(host_.parent_path());
    EXPECT_THAT(add(profile("A")), HasSubstr(path_));
}

TEST_F(StoreProcesses, changes_leaveNoTemporaryFilesBehind) {
    for (const char* identifier : {"A", "B", "C"}) EXPECT_EQ("success", add(profile(identifier)));
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(host_.parent_path()))
        names.insert(entry.path().filename().string());
    const std::string name = host_.filename().string();
    EXPECT_EQ((std::set<std::string>{name, "." + name + ".history", ".locks"}), names);
}

TEST_F(StoreProcesses, changesAndRestorationsAtOnce_leaveAHistoryInOrder) {
    constexpr int count = 40;
    const std::vector<pid_t> children{start("a", count, Others::GoBack), start("b", count, Others::GoBack)};
    std::set<std::uint64_t> given;
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ("success", onceLocked([&] { return add(profile("m" + std::to_string(i))); }));
        const auto kept = *required(quietrix::ProfileHistory::keep());
        given.insert(required(kept)->number);
        if (i % 3 != 0) continue;
        // Back to what somebody had a moment ago, and to what is there again.
        const auto generations = *required(quietrix::ProfileHistory::generations());
        const std::uint64_t earlier = generations.at(std::min<std::size_t>(generations.size() - 1, 3)).number;
        for (const std::uint64_t number : {earlier, required(kept)->number}) {
            const std::string outcome = onceLocked([&] {
                const auto restored = store_->restoreGeneration(number);
                return restored ? "success" : restored.error().localizedDescription;
            });
            // Others may have made so many changes meanwhile that it was thinned out.
            EXPECT_THAT(outcome, testing::AnyOf("success", HasSubstr("There is no state of the number")));
        }
    }
    for (const pid_t child : children) EXPECT_EQ(0, waitFor(child));
    const auto entries = *required(quietrix::ProfileHistory::entries());
    ASSERT_LE(entries.size(), 80U);
    ASSERT_GE(entries.size(), 50U);
    std::uint64_t above = std::numeric_limits<std::uint64_t>::max();
    for (const auto& each : entries) {
        ASSERT_TRUE(each.number);
        EXPECT_LT(*each.number, above) << "in order, and each once";
        above = *each.number;
        EXPECT_EQ("", each.problem) << *each.number;
    }
    EXPECT_GE(*entries.front().number, *given.rbegin());
    EXPECT_EQ(fs::hard_link_count(host_), 2U);
}

TEST_F(StoreProcesses, killedAtAnyInstant_leavesAHistoryThatGoesOn) {
    std::mt19937 random(11);
    std::uint64_t newest = 0;
    for (int round = 0; round < 20; ++round) {
        const auto stamp = files_->stamp(path_);
        const pid_t child = start("k" + std::to_string(round) + "-", 1000);
        ASSERT_GT(child, 0);
        ASSERT_TRUE(changesFrom(stamp));
        // The instant of the kill is what the test is about: in the midst of any change.
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
        ASSERT_EQ(0, kill(child, SIGKILL));
        waitFor(child);
        // What was written and not linked any more is kept by the next who comes.
        ASSERT_EQ("success", add(profile("after" + std::to_string(round))));
        const auto generations = *required(quietrix::ProfileHistory::generations());
        ASSERT_GT(generations.front().number, newest);
        newest = generations.front().number;
        for (const auto& each : generations)
            ASSERT_TRUE(quietrix::ProfileHistory::profiles(each)) << "round " << round << ", " << each.name;
        const auto before = quietrix::ProfileHistory::profiles(generations.at(1));
        ASSERT_EQ(required(before)->profiles().size() + 1, readAnew().size()) << "round " << round;
    }
}

}  // namespace
