// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <thread>

#include "device/MainSettingsFile.h"
#include "device/PhonePaths.h"
#include "platform/foundation/PropertyList.h"
#include "tests/device/Child.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using device::MainSettingsFile;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::Child;
using testing_support::readText;
using testing_support::TemporaryDirectory;
using testing_support::writeText;

class MainSettingsFileTest : public testing::Test {
  protected:
    doubles::Phone phone;
    TemporaryDirectory root;
    std::string path = root / std::string(device::phonePaths::mainSettings.substr(1));

    std::vector<std::string> mend() {
        MainSettingsFile(root.path().string()).mend();
        phone.drain();
        return phone.log->lines();
    }
    /// The files put aside, by their names' ends behind the day, with what they hold.
    std::map<std::string, std::string> aside() const {
        std::map<std::string, std::string> found;
        const std::string start = fs::path(path).filename().string() + ".damaged-";
        for (const auto& entry : fs::directory_iterator(fs::path(path).parent_path())) {
            const std::string name = entry.path().filename().string();
            if (!name.starts_with(start)) continue;
            constexpr std::size_t day = std::string_view("2026-11-22").size();
            found[name.substr(start.size() + day)] = readText(entry.path());
        }
        return found;
    }
    bool isFresh() const {
        const std::string text = readText(path);
        const auto list =
            platform::PropertyListSerialization::propertyListWithData({text.begin(), text.end()});
        return list &&
               *list == platform::Value(platform::Dictionary{{"com.velmora.quietrix.enabled", false}});
    }
};

TEST_F(MainSettingsFileTest, emptyFile_isPutAsideAndAFreshOneTakesItsPlace) {
    writeText(path, "");
    EXPECT_THAT(mend(), ElementsAre(ContainsRegex(
                            "com\\.velmora\\.quietrix\\.plist\" is damaged\\. It was put aside as "
                            "\".*/com\\.velmora\\.quietrix\\.plist\\.damaged-....-..-..\"")));
    EXPECT_EQ(aside(), (std::map<std::string, std::string>{{"", ""}}));
    EXPECT_TRUE(isFresh());
    EXPECT_EQ(mend().size(), 1U);
    EXPECT_EQ(aside().size(), 1U);
}

TEST_F(MainSettingsFileTest, damagedFiles_areAllKept) {
    for (const char* bytes : {"bplist00cut", "<plist", "more"}) {
        writeText(path, bytes);
        mend();
    }
    EXPECT_EQ(aside(),
              (std::map<std::string, std::string>{{"", "bplist00cut"}, {"-2", "<plist"}, {"-3", "more"}}));
    EXPECT_EQ(phone.log->lines().size(), 3U);
    EXPECT_TRUE(isFresh());
}

TEST_F(MainSettingsFileTest, mendedFile_keepsItsMode) {
    writeText(path, "");
    fs::permissions(path, static_cast<fs::perms>(0640));
    mend();
    EXPECT_TRUE(isFresh());
    EXPECT_EQ(fs::status(path).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(MainSettingsFileTest, linkedFile_isPutAsideWhereItIsAndTheLinkStays) {
    writeText(root / "elsewhere/real", "cut");
    fs::create_directories(fs::path(path).parent_path());
    fs::create_symlink(root / "elsewhere/real", path);
    mend();
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_TRUE(isFresh());
    EXPECT_EQ(aside().size(), 0U);
    // With the lock folder.
    EXPECT_EQ(std::distance(fs::directory_iterator(root / "elsewhere"), {}), 3);
}

TEST_F(MainSettingsFileTest, missingFile_staysMissing) {
    fs::create_directories(fs::path(path).parent_path());
    EXPECT_THAT(mend(), ElementsAre());
    EXPECT_TRUE(fs::is_empty(fs::path(path).parent_path()));
}

TEST_F(MainSettingsFileTest, goodFile_orOneThatCannotBeRead_isLeftAndNothingIsLocked) {
    const std::string array = "<?xml version=\"1.0\"?><plist version=\"1.0\"><array/></plist>";
    writeText(path, array);
    EXPECT_THAT(mend(), ElementsAre());
    EXPECT_EQ(readText(path), array);
    fs::remove(path);
    fs::create_directory(path);
    EXPECT_THAT(mend(), ElementsAre());
    EXPECT_FALSE(fs::exists(fs::path(path).parent_path() / ".locks"));
    EXPECT_EQ(aside().size(), 0U);
}

TEST_F(MainSettingsFileTest, fileThatCannotBePutAside_isLeftWithOneLine) {
    writeText(path, "cut");
    writeText(fs::path(path).parent_path() / ".locks", "in the way");
    EXPECT_THAT(mend(), ElementsAre(HasSubstr("could not be put aside: ")));
    EXPECT_EQ(readText(path), "cut");
}

TEST_F(MainSettingsFileTest, severalProcessesAtOnce_putItAsideOnce) {
    for (int round = 0; round < 10; ++round) {
        fs::remove_all(fs::path(path).parent_path());
        writeText(path, "cut");
        std::vector<std::unique_ptr<Child>> children;
        for (int i = 0; i < 4; ++i) {
            children.push_back(
                std::make_unique<Child>(std::vector<std::string>{"mend", root.path().string()}));
            ASSERT_EQ(children.back()->readLine(), "ready");
        }
        for (const auto& child : children) child->writeLine();
        for (const auto& child : children) EXPECT_EQ(child->wait(), 0);
        EXPECT_EQ(aside(), (std::map<std::string, std::string>{{"", "cut"}}));
        EXPECT_TRUE(isFresh());
    }
}

TEST_F(MainSettingsFileTest, killedInTheMiddle_leavesADamagedOrAFreshFile) {
    for (int round = 0; round < 40; ++round) {
        writeText(path, "cut");
        Child child({"mend", root.path().string()});
        ASSERT_EQ(child.readLine(), "ready");
        child.writeLine();
        // Not for a condition: the kill is to hit each step. Which one it is does not matter to what must
        // hold.
        std::this_thread::sleep_for(std::chrono::microseconds(round * 50));
        child.signal(SIGKILL);
        child.wait();
        EXPECT_TRUE(readText(path) == "cut" || isFresh()) << round;
        mend();
        EXPECT_TRUE(isFresh()) << round;
    }
}

}  // namespace
