// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include "device/RootFileSystem.h"
#include "tests/device/Child.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using doubles::errorOf;
using doubles::required;

namespace fs = std::filesystem;
using device::RootFileSystem;
using platform::Data;
using platform::Write;
using testing::ElementsAre;
using testing_support::Child;
using testing_support::readText;
using testing_support::TemporaryDirectory;
using testing_support::writeText;

Data bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

class RootFileSystemTest : public testing::Test {
  protected:
    TemporaryDirectory root;
    TemporaryDirectory outside;
    RootFileSystem files{root.path().string()};

    static fs::perms modeOf(const fs::path& path) { return fs::status(path).permissions(); }
};

TEST_F(RootFileSystemTest, paths_areLookedUpBelowTheRootByTheirLetters) {
    const std::string base = root.path().string();
    EXPECT_EQ(files.hostPath("/"), base);
    EXPECT_EQ(files.hostPath("/a//b/"), base + "/a/b");
    EXPECT_EQ(files.hostPath("/a/./b/../c"), base + "/a/c");
    EXPECT_EQ(files.hostPath("/a/.."), base);
}

TEST_F(RootFileSystemTest, pathsThatAreNone_areErrors) {
    EXPECT_EQ(errorOf(files.read("a/b")), "The path \"a/b\" is not absolute.");
    EXPECT_EQ(errorOf(files.read("")), "The path \"\" is not absolute.");
    EXPECT_EQ(errorOf(files.write("/../x", {}, Write::InPlace)),
              "The path \"/../x\" leads out of the phone.");
    EXPECT_EQ(errorOf(files.remove("/a/../../x")), "The path \"/a/../../x\" leads out of the phone.");
    EXPECT_FALSE(files.read(std::string_view("/a\0b", 4)));
    EXPECT_EQ(files.hostPath("/.."), "");
    EXPECT_FALSE(files.exists("/.."));
}

TEST_F(RootFileSystemTest, read_givesTheBytes_orOneSentence) {
    writeText(root / "d/f", std::string("a\0b", 3));
    EXPECT_EQ(*required(files.read("/d/f")), (Data{'a', 0, 'b'}));
    EXPECT_EQ(errorOf(files.read("/var/mobile/none")),
              "The file \"/var/mobile/none\" could not be read: No such file or directory.");
    EXPECT_EQ(errorOf(files.read("/d")), "The file \"/d\" could not be read: Is a directory.");
}

TEST_F(RootFileSystemTest, read_ofAPipe_failsRatherThanWaits) {
    ASSERT_EQ(mkfifo((root / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(errorOf(files.read("/pipe")), "The file \"/pipe\" could not be read: Operation not supported.");
    EXPECT_FALSE(files.write("/pipe", bytes("x"), Write::InPlace));
}

TEST_F(RootFileSystemTest, write_inPlace_keepsTheFileItself) {
    ASSERT_TRUE(files.write("/f", bytes("long text"), Write::InPlace));
    const auto before = files.stamp("/f").value();
    ASSERT_TRUE(files.write("/f", bytes("short"), Write::InPlace));
    EXPECT_EQ(readText(root / "f"), "short");
    EXPECT_EQ(files.stamp("/f").value().value().inode, before->inode);
}

TEST_F(RootFileSystemTest, write_inPlace_whereNothingIs_makesTheFileWhole) {
    fs::create_symlink(outside / "later", root / "link");
    ASSERT_TRUE(files.write("/link", bytes("x"), Write::InPlace));
    EXPECT_EQ(readText(outside / "later"), "x");
    EXPECT_TRUE(fs::is_symlink(root / "link"));
    EXPECT_EQ(errorOf(files.write("/none/f", bytes("x"), Write::InPlace)),
              "The file \"/none/f\" could not be written: No such file or directory.");
}

/// Looks at the file until both writers have ended.
template <class Look>
void watchWriters(Child& first, Child& second, const Look& look) {
    std::thread looking;
    std::atomic<bool> isOver = false;
    looking = std::thread([&] {
        while (!isOver) look();
    });
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(second.wait(), 0);
    isOver = true;
    looking.join();
}

TEST_F(RootFileSystemTest, write_inPlaceByTwoProcesses_isNeverSeenEmptyOrCut) {
    const std::string length = "64";
    ASSERT_TRUE(files.write("/f", Data(64, 'a'), Write::InPlace));
    Child a({"overwrite", root.path().string(), "/f", "400", length, length});
    Child b({"overwrite", root.path().string(), "/f", "400", length, length});
    int looks = 0;
    watchWriters(a, b, [&] {
        ++looks;
        // As a program reads it that knows nothing of locks.
        ASSERT_EQ(readText(root / "f").size(), 64U);
    });
    EXPECT_GT(looks, 0);
}

TEST_F(RootFileSystemTest, write_inPlaceOfDifferentLengths_isReadAsOneOfThem) {
    ASSERT_TRUE(files.write("/f", Data(100, 'a'), Write::InPlace));
    Child a({"overwrite", root.path().string(), "/f", "120", "100", "90000"});
    Child b({"overwrite", root.path().string(), "/f", "120", "9000", "40"});
    int looks = 0;
    watchWriters(a, b, [&] {
        const auto data = files.read("/f");
        ASSERT_TRUE(data);
        ASSERT_FALSE(data->empty());
        ++looks;
        // Each text says of itself how long it is.
        const std::string text(data->begin(), data->end());
        ASSERT_TRUE(text == std::string(text.size(), text[0]));
        ASSERT_TRUE(text.size() == 100 || text.size() == 90000 || text.size() == 9000 || text.size() == 40)
            << text.size();
    });
    EXPECT_GT(looks, 0);
}

TEST_F(RootFileSystemTest, write_inPlaceKilledAtAnyInstant_leavesAWholeFileThatCanBeWritten) {
    ASSERT_TRUE(files.write("/f", Data(64, 'a'), Write::InPlace));
    for (int round = 0; round < 500; ++round) {
        Child writer({"overwrite", root.path().string(), "/f", "1000000", "64", "64"});
        ASSERT_EQ(writer.readLine(), "ready");
        // Not for a condition: the kill is to hit each step of a write. Which one does not matter to what
        // must hold.
        std::this_thread::sleep_for(std::chrono::microseconds(round * 7));
        writer.signal(SIGKILL);
        writer.wait();
        ASSERT_EQ(readText(root / "f").size(), 64U) << round;
    }
    EXPECT_TRUE(files.write("/f", bytes("end"), Write::InPlace));
    EXPECT_EQ(readText(root / "f"), "end");
}

TEST_F(RootFileSystemTest, write_inPlaceWhileAWriterIsStopped_failsInTimeAndNamesIt) {
    ASSERT_TRUE(files.write("/f", bytes("old"), Write::InPlace));
    Child holder({"lock", root.path().string(), "/f"});
    ASSERT_EQ(holder.readLine(), "locked");
    EXPECT_EQ(errorOf(files.write("/f", bytes("new"), Write::InPlace)),
              "The file \"/f\" could not be written: the process " + std::to_string(holder.pid()) +
                  " still held \"" + root.path().string() + "/.locks/f\" after 2 seconds.");
    EXPECT_EQ(readText(root / "f"), "old");
}

TEST_F(RootFileSystemTest, write_atomically_replacesTheFileAndLeavesNothingBeside) {
    ASSERT_TRUE(files.write("/f", bytes("old"), Write::Atomically));
    const auto before = files.stamp("/f").value();
    ASSERT_TRUE(files.write("/f", bytes("new"), Write::Atomically));
    EXPECT_EQ(readText(root / "f"), "new");
    EXPECT_NE(files.stamp("/f").value().value().inode, before->inode);
    EXPECT_THAT(*required(files.list("/")), ElementsAre("f"));
}

TEST_F(RootFileSystemTest, write_newFiles_areForTheirOwnerOnly_andForNobodyWhomTheUmaskKeepsOut) {
    const mode_t before = umask(0);
    ASSERT_TRUE(files.createDirectory("/d/e"));
    for (const Write how : {Write::InPlace, Write::Atomically}) {
        const std::string name = how == Write::InPlace ? "/d/placed" : "/d/new";
        ASSERT_TRUE(files.write(name, bytes("x"), how));
        EXPECT_EQ(modeOf(root / name.substr(1)), static_cast<fs::perms>(0600));
    }
    ASSERT_TRUE(files.lockExclusively("/d/new", 0));
    for (const char* directory : {"d", "d/e", "d/.locks"})
        EXPECT_EQ(modeOf(root / directory), static_cast<fs::perms>(0700)) << directory;
    EXPECT_EQ(modeOf(root / "d/.locks/new"), static_cast<fs::perms>(0600));
    umask(0277);
    EXPECT_TRUE(files.write("/d/strict", bytes("x"), Write::Atomically));
    umask(before);
    EXPECT_EQ(modeOf(root / "d/strict"), static_cast<fs::perms>(0400));
}

TEST_F(RootFileSystemTest, write_fileThatIsReplaced_keepsItsMode) {
    for (const mode_t mode : {0640U, 0644U, 0400U}) {
        writeText(root / "f", "old");
        fs::permissions(root / "f", static_cast<fs::perms>(mode));
        ASSERT_TRUE(files.write("/f", bytes("new"), Write::Atomically));
        EXPECT_EQ(modeOf(root / "f"), static_cast<fs::perms>(mode));
        fs::permissions(root / "f", static_cast<fs::perms>(0644));
        ASSERT_TRUE(files.write("/f", bytes("newer"), Write::InPlace));
        EXPECT_EQ(modeOf(root / "f"), static_cast<fs::perms>(0644));
    }
}

TEST_F(RootFileSystemTest, write_throughASymbolicLink_replacesItsTargetAndKeepsTheLink) {
    writeText(outside / "real", "old");
    fs::create_symlink("second", root / "first");
    fs::create_symlink(outside / "real", root / "second");
    ASSERT_TRUE(files.write("/first", bytes("new"), Write::Atomically));
    EXPECT_TRUE(fs::is_symlink(root / "first"));
    EXPECT_TRUE(fs::is_symlink(root / "second"));
    EXPECT_EQ(readText(outside / "real"), "new");
    EXPECT_THAT(*required(files.list("/")), ElementsAre("first", "second"));
    EXPECT_EQ(std::distance(fs::directory_iterator(outside.path()), {}), 1);
}

TEST_F(RootFileSystemTest, write_throughADanglingLink_makesItsTarget) {
    fs::create_symlink(outside / "later", root / "link");
    ASSERT_TRUE(files.write("/link", bytes("x"), Write::Atomically));
    EXPECT_EQ(readText(outside / "later"), "x");
    EXPECT_TRUE(fs::is_symlink(root / "link"));
}

TEST_F(RootFileSystemTest, write_linksInACircle_isAnError) {
    fs::create_symlink("b", root / "a");
    fs::create_symlink("a", root / "b");
    EXPECT_EQ(errorOf(files.write("/a", {}, Write::Atomically)),
              "The file \"/a\" could not be written: Too many levels of symbolic links.");
}

TEST_F(RootFileSystemTest, write_thatFails_leavesTheOldAndNoTemporary) {
    fs::create_directories(root / "d/inner");
    EXPECT_EQ(errorOf(files.write("/d", bytes("x"), Write::Atomically)),
              "The file \"/d\" could not be written: Is a directory.");
    EXPECT_EQ(errorOf(files.write("/none/f", bytes("x"), Write::Atomically)),
              "The file \"/none/f\" could not be written: No such file or directory.");
    EXPECT_THAT(*required(files.list("/")), ElementsAre("d"));
    EXPECT_TRUE(files.isDirectory("/d/inner"));
}

TEST_F(RootFileSystemTest, write_killedAtAnyInstant_leavesAWholeFileAndTheNextWriterNoTemporary) {
    constexpr std::size_t size = 300'000;
    ASSERT_TRUE(files.write("/f", Data(size, 'z'), Write::Atomically));
    for (int round = 0; round < 25; ++round) {
        Child writer({"write", root.path().string(), "/f", std::to_string(size)});
        ASSERT_EQ(writer.readLine(), "ready");
        // Not for a condition: the kill is to hit each step of a write. Which one does not matter to what
        // must hold.
        std::this_thread::sleep_for(std::chrono::microseconds(round * 397));
        writer.signal(SIGKILL);
        writer.wait();
        const auto data = files.read("/f");
        ASSERT_TRUE(data);
        EXPECT_EQ(data->size(), size);
        EXPECT_TRUE(std::ranges::all_of(*data, [&](std::uint8_t byte) { return byte == data->front(); }));
    }
    ASSERT_TRUE(files.write("/f", bytes("end"), Write::Atomically));
    EXPECT_THAT(*required(files.list("/")), ElementsAre("f"));
}

TEST_F(RootFileSystemTest, write_staleTemporaries_areReusedOrRemoved_aLivingWritersIsNot) {
    writeText(root / ".f.0.tmp", "a living writer's");
    writeText(root / ".f.1.tmp", "left behind, and longer than what comes");
    writeText(root / ".f.2.tmp", "left behind");
    const device::Descriptor living(open((root / ".f.0.tmp").c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(flock(living.get(), LOCK_EX), 0);
    ASSERT_TRUE(files.write("/f", bytes("new"), Write::Atomically));
    EXPECT_EQ(readText(root / "f"), "new");
    EXPECT_THAT(*required(files.list("/")), ElementsAre(".f.0.tmp", "f"));
    EXPECT_EQ(readText(root / ".f.0.tmp"), "a living writer's");
}

TEST_F(RootFileSystemTest, write_temporaryNamesThatAreTaken_areLeftAndTheNextIsTried) {
    fs::create_directories(root / ".f.0.tmp/inner");
    fs::create_symlink(outside / "elsewhere", root / ".f.1.tmp");
    ASSERT_EQ(mkfifo((root / ".f.2.tmp").c_str(), 0600), 0);
    ASSERT_TRUE(files.write("/f", bytes("new"), Write::Atomically));
    EXPECT_EQ(readText(root / "f"), "new");
    EXPECT_THAT(*required(files.list("/")), ElementsAre(".f.0.tmp", ".f.1.tmp", ".f.2.tmp", "f"));
    EXPECT_FALSE(fs::exists(outside / "elsewhere"));
}

TEST_F(RootFileSystemTest, write_temporaryNamesAllTaken_namesTheLastOfThem) {
    for (int slot = 0; slot < 1000; ++slot)
        fs::create_directory(root / (".f." + std::to_string(slot) + ".tmp"));
    EXPECT_EQ(errorOf(files.write("/f", bytes("new"), Write::Atomically)),
              "The file \"/f\" could not be written: \"" + root.path().string() +
                  "/.f.999.tmp\" and all names before it are taken.");
}

TEST_F(RootFileSystemTest, write_fromManyThreadsAtOnce_leavesOneOfTheirFilesWhole) {
    std::vector<std::thread> threads;
    std::atomic<int> failures = 0;
    for (int t = 0; t < 6; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 20; ++i) {
                const Data data(5000, static_cast<std::uint8_t>('a' + t));
                if (!files.write("/f", data, Write::Atomically)) ++failures;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(failures, 0);
    const Data data = files.read("/f").value_or(Data());
    EXPECT_EQ(data, Data(5000, data.empty() ? 0 : data.front()));
    ASSERT_TRUE(files.write("/f", {}, Write::Atomically));
    EXPECT_THAT(*required(files.list("/")), ElementsAre("f"));
}

TEST_F(RootFileSystemTest, stamp_changesWithTheFile_andIsEmptyWithoutOne) {
    EXPECT_EQ(files.stamp("/f").value(), std::nullopt);
    writeText(root / "f", "a");
    const auto first = files.stamp("/f");
    EXPECT_EQ(files.stamp("/f"), first);
    ASSERT_TRUE(files.write("/f", bytes("b"), Write::Atomically));
    EXPECT_NE(files.stamp("/f"), first);
}

TEST_F(RootFileSystemTest, stampBelowWhatIsNoDirectory_isEmpty) {
    writeText(root / "f", "a");
    fs::create_symlink(root / "nowhere", root / "dangling");
    for (const char* path : {"/f/below", "/missing/below", "/dangling"})
        EXPECT_EQ(files.stamp(path).value(), std::nullopt) << path;
}

TEST_F(RootFileSystemTest, stampOfWhatCannotBeLookedAt_isAnError) {
    fs::create_symlink(root / "b", root / "a");
    fs::create_symlink(root / "a", root / "b");
    EXPECT_EQ(errorOf(files.stamp("/a")),
              "The file \"/a\" could not be looked at: Too many levels of symbolic links.");
    EXPECT_FALSE(files.exists("/a"));
    const std::string longName = "/" + std::string(300, 'x');
    EXPECT_EQ(errorOf(files.stamp(longName)),
              "The file \"" + longName + "\" could not be looked at: File name too long.");
    EXPECT_EQ(errorOf(files.stamp("a")), "The path \"a\" is not absolute.");
}

TEST_F(RootFileSystemTest, stampInADirectoryWithoutSearchPermission_isAnError) {
    fs::create_directory(root / "closed");
    writeText(root / "closed/f", "a");
    fs::permissions(root / "closed", fs::perms::none);
    // The administrator may look everywhere, so the look is another user's then.
    constexpr uid_t nobody = 65534;
    const bool isAdministrator = geteuid() == 0;
    if (isAdministrator) {
        fs::permissions(root.path(), fs::perms::all);
        ASSERT_EQ(seteuid(nobody), 0);
    }
    const auto stamp = files.stamp("/closed/f");
    if (isAdministrator) {
        ASSERT_EQ(seteuid(0), 0);
    }
    fs::permissions(root / "closed", fs::perms::all);
    EXPECT_EQ(errorOf(stamp), "The file \"/closed/f\" could not be looked at: Permission denied.");
    EXPECT_TRUE(files.stamp("/closed/f").value().has_value());
}

TEST_F(RootFileSystemTest, remove_takesFilesDirectoriesAndLinksButNotTheirTargets) {
    writeText(root / "d/e/f", "x");
    writeText(outside / "real", "x");
    fs::create_symlink(outside.path(), root / "link");
    EXPECT_TRUE(files.remove("/d"));
    EXPECT_TRUE(files.remove("/link"));
    EXPECT_TRUE(fs::exists(outside / "real"));
    EXPECT_THAT(*required(files.list("/")), ElementsAre());
    EXPECT_EQ(errorOf(files.remove("/d")),
              "The file \"/d\" could not be removed: No such file or directory.");
    EXPECT_FALSE(files.remove("/"));
    EXPECT_TRUE(fs::exists(root.path()));
}

TEST_F(RootFileSystemTest, createDirectory_makesThoseAboveAndAcceptsOneThatExists) {
    EXPECT_TRUE(files.createDirectory("/a/b/c"));
    EXPECT_TRUE(files.createDirectory("/a/b/c"));
    EXPECT_TRUE(files.isDirectory("/a/b/c"));
    writeText(root / "f", "x");
    EXPECT_EQ(errorOf(files.createDirectory("/f")), "The file \"/f\" could not be created: File exists.");
    EXPECT_EQ(errorOf(files.createDirectory("/f/g")),
              "The file \"/f/g\" could not be created: Not a directory.");
}

TEST_F(RootFileSystemTest, list_sortsByBytes) {
    for (const char* name : {"b", "a", "Z", "\xc3\xa4"}) writeText(root / name, "");
    EXPECT_THAT(*required(files.list("/")), ElementsAre("Z", "a", "b", "\xc3\xa4"));
    EXPECT_EQ(errorOf(files.list("/a")), "The file \"/a\" could not be listed: Not a directory.");
}

TEST_F(RootFileSystemTest, lock_heldByAnotherProcess_isNotHadInTime_butOnceThatEnds) {
    Child holder({"lock", root.path().string(), "/f"});
    ASSERT_EQ(holder.readLine(), "locked");
    EXPECT_EQ(errorOf(files.lockExclusively("/f", 0.05)),
              "The file \"/f\" could not be locked: the process " + std::to_string(holder.pid()) +
                  " still held \"" + root.path().string() + "/.locks/f\" after 0.05 seconds.");
    holder.signal(SIGKILL);
    holder.wait();
    EXPECT_TRUE(files.lockExclusively("/f", 60));
}

TEST_F(RootFileSystemTest, lock_isExclusiveWithinOneProcessToo_andThroughLinks) {
    fs::create_directories(root / "d");
    fs::create_symlink("d/real", root / "link");
    auto held = files.lockExclusively("/link", 0);
    ASSERT_TRUE(held);
    EXPECT_FALSE(files.lockExclusively("/d/real", 0));
    EXPECT_TRUE(files.lockExclusively("/d/other", 0));
    held->reset();
    EXPECT_TRUE(files.lockExclusively("/d/real", 0));
}

TEST_F(RootFileSystemTest, lock_ofALinkedFileInTwoRoots_isOne) {
    TemporaryDirectory second;
    RootFileSystem others(second.path().string());
    fs::create_symlink(outside / "real", root / "link");
    fs::create_symlink(outside.path(), second / "directory");
    const auto held = files.lockExclusively("/link", 0);
    ASSERT_TRUE(held);
    EXPECT_FALSE(others.lockExclusively("/directory/real", 0));
}

TEST_F(RootFileSystemTest, lock_fileOfTheOldKind_isNotWaitedFor) {
    writeText(root / ".f.lock", "");
    const device::Descriptor old(open((root / ".f.lock").c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(flock(old.get(), LOCK_EX), 0);
    struct flock whole{};
    whole.l_type = F_WRLCK;
    ASSERT_EQ(fcntl(old.get(), F_OFD_SETLK, &whole), 0);
    EXPECT_TRUE(files.lockExclusively("/f", 0));
}

TEST_F(RootFileSystemTest, lock_makesReadModifyWriteOfSeveralProcessesLoseNothing) {
    Child a({"count", root.path().string(), "/n", "40"});
    Child b({"count", root.path().string(), "/n", "40"});
    EXPECT_EQ(a.wait(), 0);
    EXPECT_EQ(b.wait(), 0);
    EXPECT_EQ(readText(root / "n"), "80");
}

}  // namespace
