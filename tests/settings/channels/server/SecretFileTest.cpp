// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/foundation/Device.h"
#include "settings/channels/server/Secret.h"
#include "settings/channels/server/SecretFile.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace settings::server {

namespace fs = std::filesystem;

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class LinesOfTheLog : public platform::LogSink {
  public:
    void write(const std::string& line) override { lines.push_back(line); }
    std::vector<std::string> lines;
};

class SecretFileTest : public testing::Test {
  protected:
    SecretFileTest() {
        platform::Device device;
        device.log = log_;
        platform::Device::install(std::move(device));
        fs::create_directory(runtime_);
        fs::create_directory(root_);
        allow(runtime_, 0700);
    }
    ~SecretFileTest() override { platform::Device::install({}); }

    static void allow(const fs::path& path, mode_t mode) { ASSERT_EQ(chmod(path.c_str(), mode), 0); }
    static mode_t modeOf(const fs::path& path) {
        struct stat facts{};
        EXPECT_EQ(stat(path.c_str(), &facts), 0);
        return facts.st_mode & 07777;
    }

    std::string secret(std::uint16_t port = 8123, OldSecret old = OldSecret::TakeOver) {
        const auto kept = keptSecret({runtime_.string(), root_.string(), port}, old);
        EXPECT_TRUE(kept.has_value());
        EXPECT_TRUE(isSecretText(*kept));
        return *kept;
    }

    std::vector<fs::path> files() const {
        std::vector<fs::path> found;
        if (!fs::is_directory(folder())) return found;
        for (const auto& entry : fs::directory_iterator(folder())) found.push_back(entry.path());
        return found;
    }
    fs::path folder() const { return runtime_ / "quietrix-settings"; }

    testing_support::TemporaryDirectory directory_;
    fs::path runtime_ = directory_.path() / "runtime";
    fs::path root_ = directory_.path() / "root";
    std::shared_ptr<LinesOfTheLog> log_ = std::make_shared<LinesOfTheLog>();
};

}  // namespace

TEST_F(SecretFileTest, nextStart_takesTheSecretOver) {
    const std::string first = secret();
    EXPECT_EQ(secret(), first);
    EXPECT_EQ(modeOf(folder()), 0700u);
    ASSERT_EQ(files().size(), 1u);
    EXPECT_EQ(modeOf(files().front()), 0600u);
    EXPECT_THAT(log_->lines, IsEmpty());
}

TEST_F(SecretFileTest, forgottenSecret_isReplacedForGood) {
    const std::string first = secret();
    const std::string second = secret(8123, OldSecret::Forget);
    EXPECT_NE(second, first);
    EXPECT_EQ(secret(), second);
    EXPECT_EQ(files().size(), 1u);
}

TEST_F(SecretFileTest, otherPortOrRoot_hasASecretOfItsOwn) {
    const std::string first = secret();
    EXPECT_NE(secret(8124), first);
    const fs::path other = directory_.path() / "other";
    fs::create_directory(other);
    EXPECT_NE(keptSecret({runtime_.string(), other.string(), 8123}, OldSecret::TakeOver).value(), first);
    EXPECT_EQ(secret(), first);
}

TEST_F(SecretFileTest, sameRootWrittenOtherwise_hasTheSameSecret) {
    const std::string first = secret();
    fs::create_directory_symlink(root_, directory_.path() / "link");
    for (const fs::path& way :
         {root_ / "", root_ / ".", directory_.path() / "runtime/../root", directory_.path() / "link"})
        EXPECT_EQ(keptSecret({runtime_.string(), way.string(), 8123}, OldSecret::TakeOver).value(), first)
            << way;
}

TEST_F(SecretFileTest, withoutARuntimeDirectory_nothingIsKeptAndNothingSaid) {
    const auto one = keptSecret({"", root_.string(), 8123}, OldSecret::TakeOver);
    const auto other = keptSecret({"", root_.string(), 8123}, OldSecret::TakeOver);
    EXPECT_NE(one.value(), other.value());
    EXPECT_THAT(log_->lines, IsEmpty());
}

TEST_F(SecretFileTest, runtimeDirectoryThatIsNotOurs_isNotUsedAndNamedOnce) {
    const fs::path file = directory_.write("file", "");
    const fs::path missing = directory_.path() / "missing";
    const fs::path open = directory_.path() / "open";
    fs::create_directory(open);
    allow(open, 0710);
    for (const fs::path& path : {file, missing, open, fs::path("relative")}) {
        log_->lines.clear();
        const auto one = keptSecret({path.string(), root_.string(), 8123}, OldSecret::TakeOver);
        const auto other = keptSecret({path.string(), root_.string(), 8123}, OldSecret::TakeOver);
        EXPECT_NE(one.value(), other.value()) << path;
        EXPECT_THAT(log_->lines, ElementsAre(HasSubstr(path.string()), HasSubstr(path.string())));
    }
    EXPECT_TRUE(fs::is_empty(open));
}

TEST_F(SecretFileTest, directoryOfAnotherUser_isNotUsed) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give a directory to another user";
    secret();
    for (const fs::path& path : {folder(), runtime_}) {
        ASSERT_EQ(chown(path.c_str(), 65534, 65534), 0);
        log_->lines.clear();
        EXPECT_NE(secret(), secret());
        ASSERT_EQ(log_->lines.size(), 2u);
        EXPECT_THAT(log_->lines.front(), HasSubstr("belongs to another user"));
    }
}

TEST_F(SecretFileTest, folderThatOthersMayEnter_isNotUsed) {
    secret();
    allow(folder(), 0755);
    EXPECT_NE(secret(), secret());
    ASSERT_EQ(log_->lines.size(), 2u);
    EXPECT_THAT(log_->lines.front(), HasSubstr("is open to other users"));
}

TEST_F(SecretFileTest, folderThatIsALink_isNotFollowed) {
    const fs::path elsewhere = directory_.path() / "elsewhere";
    fs::create_directory(elsewhere);
    allow(elsewhere, 0700);
    fs::create_directory_symlink(elsewhere, folder());
    secret();
    EXPECT_TRUE(fs::is_empty(elsewhere));
    EXPECT_EQ(log_->lines.size(), 1u);
}

TEST_F(SecretFileTest, fileThatIsNoSecretOfOurs_isReplacedByANewOne) {
    const std::string first = secret();
    const fs::path file = files().at(0);
    const auto write = [&](const std::string& text) { std::ofstream(file) << text; };
    const auto spoil = std::vector<std::function<void()>>{
        [&] { allow(file, 0640); },
        [&] { write(""); },
        [&] { write(std::string(63, 'a')); },
        [&] { write(std::string(200, 'a')); },
        [&] { write(std::string(64, 'g')); },
        [&] {
            fs::remove(file);
            fs::create_symlink(directory_.write("planted", std::string(64, 'a')), file);
        },
        [&] {
            fs::remove(file);
            ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
        },
    };
    for (const auto& each : spoil) {
        each();
        log_->lines.clear();
        const std::string made = secret();
        EXPECT_NE(made, first);
        EXPECT_NE(made, std::string(64, 'a'));
        EXPECT_EQ(log_->lines.size(), 1u);
        EXPECT_EQ(secret(), made);
        EXPECT_EQ(modeOf(file), 0600u);
        EXPECT_EQ(files().size(), 1u);
    }
}

TEST_F(SecretFileTest, fileThatCannotBeReplaced_costsNothingButTheNextStart) {
    secret();
    const fs::path file = files().at(0);
    fs::remove(file);
    fs::create_directories(file / "full");
    EXPECT_NE(secret(), secret());
    ASSERT_FALSE(log_->lines.empty());
    EXPECT_THAT(log_->lines.back(), HasSubstr(file.string()));
    EXPECT_EQ(files().size(), 1u) << "nothing half-written is left";
}

}  // namespace settings::server
