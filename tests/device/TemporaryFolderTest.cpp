// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "device/TemporaryFolder.h"
#include "tests/doubles/Desktop.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using device::TemporaryFolder;
using doubles::required;
using testing_support::writeText;

/// A process that has a folder until it is killed.
class Owner {
  public:
    Owner() {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) return;
        process_ = fork();
        if (process_ == 0) {
            const auto folder = TemporaryFolder::create();
            const std::string path = folder ? folder->path() + "\n" : "\n";
            [[maybe_unused]] const ssize_t written = write(ends[1], path.data(), path.size());
            for (;;) pause();
        }
        close(ends[1]);
        for (char byte = 0; read(ends[0], &byte, 1) == 1 && byte != '\n';) path_ += byte;
        close(ends[0]);
    }
    ~Owner() { kill(); }
    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;

    const std::string& path() const { return path_; }
    void kill() {
        if (process_ <= 0) return;
        ::kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
        process_ = 0;
    }

  private:
    pid_t process_ = 0;
    std::string path_;
};

/// Among temporary ones that no other program looks at.
class TemporaryFolderTest : public testing::Test {
  protected:
    testing_support::TemporaryDirectory directory_;
    testing_support::Variable place_{"TMPDIR", directory_.path().c_str()};
};

TEST_F(TemporaryFolderTest, created_isItsOwnersOnlyAndGoesWithTheObject) {
    std::string path;
    {
        const auto folder = TemporaryFolder::create();
        path = required(folder)->path();
        EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_all);
        writeText(path + "/deep/file", "text");
    }
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(TemporaryFolderTest, leftByAKilledProgram_goesWithTheNextOne) {
    Owner owner;
    ASSERT_TRUE(fs::is_directory(owner.path()));
    writeText(owner.path() + "/deep/file", "text");
    owner.kill();
    ASSERT_TRUE(fs::exists(owner.path()));
    required(TemporaryFolder::create());
    EXPECT_FALSE(fs::exists(owner.path()));
}

TEST_F(TemporaryFolderTest, ofALivingProgram_stays) {
    const Owner owner;
    const auto own = TemporaryFolder::create();
    required(TemporaryFolder::create());
    EXPECT_TRUE(fs::is_directory(owner.path()));
    EXPECT_TRUE(fs::is_directory(required(own)->path()));
}

TEST_F(TemporaryFolderTest, withoutATemporaryDirectory_isAnError) {
    const testing_support::Variable nowhere("TMPDIR", (directory_ / "missing").c_str());
    const auto folder = TemporaryFolder::create();
    ASSERT_FALSE(folder);
    EXPECT_TRUE(folder.error().starts_with("there is no temporary directory: ")) << folder.error();
}

TEST_F(TemporaryFolderTest, linkOfThatName_isNotFollowed) {
    const testing_support::TemporaryDirectory directory;
    writeText(directory / "kept", "text");
    fs::create_symlink(directory.path(), directory_ / "quietrix-scratch-abcdef");
    required(TemporaryFolder::create());
    EXPECT_TRUE(fs::exists(directory / "kept"));
}

}  // namespace
