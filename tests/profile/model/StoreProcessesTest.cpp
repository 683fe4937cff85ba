// SPDX-License-Identifier: MIT
// The store on a real file system, shared with other processes.
#include <gmock/gmock.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <filesystem>
#include <functional>
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

    pid_t start(const std::string& prefix, int count) {
        std::string program = STORE_WRITER;
        std::string root = root_.path().string();
        std::string prefixArgument = prefix;
        std::string countArgument = std::to_string(count);
        char* arguments[] = {program.data(), root.data(), prefixArgument.data(), countArgument.data(),
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
    EXPECT_EQ((std::set<std::string>{host_.filename().string(), ".locks"}), names);
}

}  // namespace
