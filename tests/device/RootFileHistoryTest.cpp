// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "device/RootFileHistory.h"
#include "device/RootFileSystem.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using doubles::errorOf;
using doubles::required;

namespace fs = std::filesystem;
using Kept = platform::FileHistory::Kept;
using platform::Data;
using platform::Missing;
using platform::Write;
using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::readText;
using testing_support::TemporaryDirectory;
using testing_support::writeText;

Data bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

class RootFileHistoryTest : public testing::Test {
  protected:
    RootFileHistoryTest() { writeText(root / "d/f", "one"); }

    std::unique_ptr<platform::FileHistory> history(Missing missing = Missing::Make) {
        return *required(files.openHistory("/d/f", missing));
    }
    std::string refusal(Missing missing = Missing::Make) {
        return errorOf(files.openHistory("/d/f", missing));
    }
    mode_t modeOf(const std::string& path) const {
        struct stat status{};
        EXPECT_EQ(lstat(path.c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    TemporaryDirectory root;
    TemporaryDirectory outside;
    device::RootFileSystem files{root.path().string()};
    const std::string folder = root / "d/.f.history";
};

TEST_F(RootFileHistoryTest, keptStates_stayWhenTheFileIsReplacedAndRemoved) {
    const auto states = required(history());
    EXPECT_EQ(*required(states->keep("1")), Kept::Yes);
    ASSERT_TRUE(files.write("/d/f", bytes("two"), Write::Atomically));
    EXPECT_EQ(*required(states->keep("2")), Kept::Yes);
    EXPECT_EQ(*required(states->stamp("2")), **required(files.stamp("/d/f")));
    ASSERT_TRUE(files.remove("/d/f"));
    EXPECT_EQ(*required(states->mark("3")), Kept::Yes);
    EXPECT_THAT(*required(states->names()), ElementsAre("1", "2", "3"));
    EXPECT_EQ(*required(states->read("1")), bytes("one"));
    EXPECT_EQ(*required(states->read("2")), bytes("two"));
    EXPECT_EQ(*required(states->read("3")), Data());
    EXPECT_TRUE(states->remove("1"));
    EXPECT_THAT(*required(states->names()), ElementsAre("2", "3"));
}

TEST_F(RootFileHistoryTest, nameThatIsTaken_isLeftAsItIs) {
    const auto states = required(history());
    writeText(folder + "/1", "theirs");
    EXPECT_EQ(*required(states->keep("1")), Kept::NameIsTaken);
    EXPECT_EQ(*required(states->mark("1")), Kept::NameIsTaken);
    EXPECT_EQ(readText(folder + "/1"), "theirs");
}

TEST_F(RootFileHistoryTest, missingFolder_isMadeOnlyWhenItIsToBe) {
    EXPECT_EQ(history(Missing::Leave), nullptr);
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_NE(history(), nullptr);
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_NE(history(Missing::Leave), nullptr);
    EXPECT_EQ(*required(files.openHistory("/none/f", Missing::Leave)), nullptr);
    EXPECT_EQ(errorOf(files.openHistory("/none/f", Missing::Make)),
              "The history of the file \"/none/f\" could not be opened: No such file or directory.");
}

TEST_F(RootFileHistoryTest, folder_canBeLookedIntoByThoseWhoMayReadTheFile) {
    fs::permissions(root / "d/f", fs::perms(0646));
    const auto states = required(history());
    EXPECT_TRUE(states->keep("1"));
    EXPECT_EQ(modeOf(folder), 0755U);
    fs::permissions(root / "d/f", fs::perms(0600));
    EXPECT_TRUE(states->keep("2"));
    EXPECT_EQ(modeOf(folder), 0700U);
}

TEST_F(RootFileHistoryTest, symbolicLinks_areNotFollowed) {
    fs::create_directories(outside / "theirs");
    fs::create_directory_symlink(outside / "theirs", folder);
    EXPECT_THAT(refusal(), HasSubstr(".f.history\": Not a directory"));
    EXPECT_THAT(refusal(Missing::Leave), HasSubstr("Not a directory"));
    fs::remove(folder);
    const auto states = required(history());
    writeText(outside / "secret", "secret");
    fs::create_symlink(outside / "secret", folder + "/1");
    EXPECT_FALSE(states->read("1"));
    // The link's own: a link is as long as the path in it.
    EXPECT_EQ(required(states->stamp("1"))->size, std::ssize(outside / "secret"));
    EXPECT_TRUE(states->remove("1"));
    EXPECT_EQ(readText(outside / "secret"), "secret");
}

TEST_F(RootFileHistoryTest, folderThatTookThePlaceOfTheOther_isNotTouched) {
    const auto states = required(history());
    fs::rename(folder, root / "d/aside");
    fs::create_directory_symlink(outside.path(), folder);
    EXPECT_EQ(*required(states->keep("1")), Kept::Yes);
    EXPECT_TRUE(fs::is_empty(outside.path()));
    EXPECT_TRUE(fs::exists(root / "d/aside/1"));
}

TEST_F(RootFileHistoryTest, whatIsNoFolder_isNamed) {
    writeText(folder, "a file");
    EXPECT_EQ(refusal(), "The history of the file \"/d/f\" could not be opened: \"" + folder +
                             "\": Not a directory; take it away while no other program uses this phone.");
}

TEST_F(RootFileHistoryTest, folderOfAnotherUser_isRefused) {
    // Files of two users are needed.
    if (geteuid() != 0) GTEST_SKIP() << "only the superuser can give a file to another user";
    ASSERT_NE(history(), nullptr);
    ASSERT_EQ(chown(folder.c_str(), 65534, 65534), 0);
    EXPECT_EQ(refusal(), "The history of the file \"/d/f\" could not be opened: \"" + folder +
                             "\" belongs to another user (65534).");
    EXPECT_FALSE(files.openHistory("/d/f", Missing::Leave));
}

TEST_F(RootFileHistoryTest, linkedFile_isKeptAndItsLinkIsNot) {
    writeText(outside / "real", "real");
    fs::create_symlink(outside / "real", root / "d/link");
    const auto states = *required(files.openHistory("/d/link", Missing::Make));
    EXPECT_EQ(*required(states->keep("1")), Kept::Yes);
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(root / "d/.link.history/1")));
    EXPECT_EQ(*required(states->read("1")), bytes("real"));
}

TEST_F(RootFileHistoryTest, fileOnAnotherFileSystem_cannotBeKept) {
    struct stat here{};
    struct stat there{};
    if (stat(root.path().c_str(), &here) != 0 || stat("/dev/shm", &there) != 0 ||
        here.st_dev == there.st_dev || access("/dev/shm", W_OK) != 0) {
        GTEST_SKIP() << "there is one file system only";
    }
    std::string pattern = "/dev/shm/quietrix-test-XXXXXX";
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    writeText(pattern + "/far", "far");
    fs::create_symlink(pattern + "/far", root / "d/link");
    const auto states = *required(files.openHistory("/d/link", Missing::Make));
    EXPECT_EQ(errorOf(states->keep("1")),
              "The file \"/d/link\" could not be kept in its history: Invalid cross-device link.");
    fs::remove_all(pattern);
}

TEST_F(RootFileHistoryTest, namesThatAreNone_areErrors) {
    const auto states = required(history());
    for (const std::string name : {"", ".", "..", "a/b", "../f"}) {
        EXPECT_FALSE(states->keep(name)) << name;
        EXPECT_FALSE(states->mark(name)) << name;
        EXPECT_FALSE(states->read(name)) << name;
        EXPECT_FALSE(states->stamp(name)) << name;
        EXPECT_FALSE(states->remove(name)) << name;
    }
    EXPECT_EQ(errorOf(states->read("none")),
              "The state \"none\" of the file \"/d/f\" could not be read: No such file or directory.");
    EXPECT_EQ(readText(root / "d/f"), "one");
}

TEST(RootFileHistory, folderName_isKnown) {
    EXPECT_TRUE(device::RootFileHistory::isFolderName(".f.history"));
    EXPECT_FALSE(device::RootFileHistory::isFolderName("f.history"));
    EXPECT_FALSE(device::RootFileHistory::isFolderName(".history"));
    EXPECT_FALSE(device::RootFileHistory::isFolderName(".f.history.old"));
}

}  // namespace
