// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "device/PrivateLock.h"
#include "tests/device/Child.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using device::PrivateLock;
using testing_support::Child;
using testing_support::TemporaryDirectory;
using testing_support::writeText;

constexpr uid_t nobody = 65534;

class PrivateLockTest : public testing::Test {
  protected:
    TemporaryDirectory directory;
    device::host::Location file{directory / "", "f"};
    std::string folder = directory / ".locks";
    std::string lockFile = directory / ".locks/f";

    std::string refusal(double seconds = 0) const {
        const auto lock = PrivateLock::take(file, seconds);
        return lock ? "" : lock.error();
    }
    static unsigned modeOf(const std::string& path) {
        return static_cast<unsigned>(fs::status(path).permissions());
    }
};

TEST_F(PrivateLockTest, takenInThisProcess_excludesOthersUntilItGoes) {
    auto lock = PrivateLock::take(file, 0);
    ASSERT_TRUE(lock);
    EXPECT_EQ(refusal(0.01), "the process " + std::to_string(getpid()) + " still held \"" + lockFile +
                                 "\" after 0.01 seconds");
    EXPECT_TRUE(PrivateLock::take({file.directory, "other"}, 0));
    {
        const PrivateLock gone = *std::move(lock);
    }
    EXPECT_EQ(refusal(), "");
}

TEST_F(PrivateLockTest, severalWaiting_haveItOneAfterTheOther) {
    std::atomic<int> inside = 0;
    std::atomic<int> had = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 20; ++i) {
                const auto lock = PrivateLock::take(file, 60);
                ASSERT_TRUE(lock);
                EXPECT_EQ(++inside, 1);
                ++had;
                --inside;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(had, 80);
}

TEST_F(PrivateLockTest, folderMadeAnewWhileItIsHeld_isLockedByItself) {
    const auto old = PrivateLock::take(file, 0);
    ASSERT_TRUE(old);
    fs::remove_all(folder);
    EXPECT_EQ(refusal(), "");
}

TEST_F(PrivateLockTest, folderOpenToOthers_isClosedAgain) {
    fs::create_directory(folder);
    fs::permissions(folder, static_cast<fs::perms>(0755));
    writeText(lockFile, "");
    fs::permissions(lockFile, static_cast<fs::perms>(0666));
    EXPECT_EQ(refusal(), "");
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_EQ(modeOf(lockFile), 0600U);
}

TEST_F(PrivateLockTest, lockFileThatAStrangerShares_isPutOutOfUse) {
    writeText(lockFile, "");
    const device::Descriptor stranger(open(lockFile.c_str(), O_RDONLY | O_CLOEXEC));
    struct flock whole{};
    whole.l_type = F_RDLCK;
    ASSERT_EQ(fcntl(stranger.get(), F_OFD_SETLK, &whole), 0);
    const auto lock = PrivateLock::take(file, 0);
    ASSERT_TRUE(lock);
    EXPECT_NE(refusal(), "");
}

TEST_F(PrivateLockTest, lockFileThatAStrangerSharesWhileItIsHeld_staysHeld) {
    const auto lock = PrivateLock::take(file, 0);
    ASSERT_TRUE(lock);
    const device::Descriptor stranger(open(lockFile.c_str(), O_RDONLY | O_CLOEXEC));
    struct flock turn{};
    turn.l_type = F_RDLCK;
    turn.l_len = 1;
    ASSERT_EQ(fcntl(stranger.get(), F_OFD_SETLK, &turn), 0);
    EXPECT_NE(refusal(0.05), "");
}

TEST_F(PrivateLockTest, readerThatHoldsItsShare_isWaitedForInTimeOnly) {
    auto lock = PrivateLock::take(file, 0);
    ASSERT_TRUE(lock);
    const device::Descriptor share = PrivateLock::shareOfReader(file, 0);
    ASSERT_TRUE(share);
    // That this returns at all is what counts.
    lock->keepReadersOut(0.01);
    EXPECT_TRUE(PrivateLock::shareOfReader(file, 0));
}

TEST_F(PrivateLockTest, readersThatAreKeptOut_areLetInAgain) {
    auto lock = PrivateLock::take(file, 0);
    ASSERT_TRUE(lock);
    lock->keepReadersOut(0);
    EXPECT_FALSE(PrivateLock::shareOfReader(file, 0.01));
    lock->letReadersIn();
    EXPECT_TRUE(PrivateLock::shareOfReader(file, 0));
}

TEST_F(PrivateLockTest, readerOfWhatWasNeverLocked_makesNothing) {
    EXPECT_FALSE(PrivateLock::shareOfReader(file, 0));
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(PrivateLockTest, somethingElseUnderTheNames_isNamedWithItsPath) {
    writeText(folder, "");
    EXPECT_EQ(refusal(),
              "\"" + folder + "\": Not a directory; take it away while no other program uses this phone");
    fs::remove(folder);
    fs::create_directory(directory / "elsewhere");
    fs::create_directory_symlink(directory / "elsewhere", folder);
    EXPECT_EQ(refusal(),
              "\"" + folder + "\": Not a directory; take it away while no other program uses this phone");
    EXPECT_TRUE(fs::is_empty(directory / "elsewhere"));
    fs::remove(folder);
    fs::create_directories(lockFile);
    EXPECT_EQ(refusal(), "\"" + lockFile + "\": Is a directory");
    fs::remove(lockFile);
    ASSERT_EQ(mkfifo(lockFile.c_str(), 0600), 0);
    EXPECT_EQ(refusal(), "\"" + lockFile + "\": Operation not supported");
    fs::remove(lockFile);
    fs::create_symlink(directory / "target", lockFile);
    EXPECT_EQ(refusal(), "\"" + lockFile + "\": Too many levels of symbolic links");
    EXPECT_FALSE(fs::exists(directory / "target"));
}

TEST_F(PrivateLockTest, missingDirectory_isToldWithoutAPath) {
    file.directory = directory / "none/";
    EXPECT_EQ(refusal(), "No such file or directory");
}

TEST_F(PrivateLockTest, whatBelongsToSomebodyElse_isNamedWithItsPath) {
    // Files of two users are needed.
    if (geteuid() != 0) GTEST_SKIP() << "only the superuser can give a file to another user";
    writeText(lockFile, "");
    ASSERT_EQ(chown(lockFile.c_str(), nobody, nobody), 0);
    EXPECT_EQ(refusal(), "\"" + lockFile + "\" belongs to another user (65534)");
    ASSERT_EQ(chown(folder.c_str(), nobody, nobody), 0);
    EXPECT_EQ(refusal(), "\"" + folder + "\" belongs to another user (65534)");
    // Of a directory of that user's own, who could do anything there, it is not a stranger's.
    ASSERT_EQ(chown(directory.path().c_str(), nobody, nobody), 0);
    EXPECT_EQ(refusal(), "");
}

TEST_F(PrivateLockTest, anotherUserOfTheMachine_holdsUpNobody) {
    // Processes of two users are needed.
    if (geteuid() != 0) GTEST_SKIP() << "only the superuser can become another user";
    fs::permissions(directory.path(), static_cast<fs::perms>(0755));
    ASSERT_EQ(refusal(), "");
    Child locked({"stranger", directory / "", folder, lockFile});
    // Nothing but the directory can be opened.
    ASSERT_EQ(locked.readLine(), "1");
    EXPECT_EQ(refusal(), "");

    // As far as somebody has opened everything meanwhile.
    fs::permissions(folder, static_cast<fs::perms>(0755));
    fs::permissions(lockFile, static_cast<fs::perms>(0644));
    Child shared({"stranger", directory / "", folder, lockFile});
    ASSERT_EQ(shared.readLine(), "3");
    EXPECT_EQ(refusal(), "");
}

}  // namespace
