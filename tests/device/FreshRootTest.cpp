// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <filesystem>
#include <set>
#include <thread>

#include "device/FreshRoot.h"
#include "platform/foundation/PropertyList.h"
#include "tests/device/Child.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using device::prepareRoot;
using testing_support::Child;
using testing_support::readText;
using testing_support::TemporaryDirectory;
using testing_support::writeText;

class FreshRootTest : public testing::Test {
  protected:
    TemporaryDirectory base;
    std::string root = base / "phone";
    std::string resources = base / "resources";
    std::string bundle = base / "built/Sample.bundle";

    FreshRootTest() {
        writeText(resources + "/root/SpeakerMute@2x.png", "mute 2");
        writeText(resources + "/root/SpeakerMute@3x.png", "mute 3");
        writeText(resources + "/root/notes.txt", "no image");
        writeText(resources + "/root/calendars/Account/Home/one.ics", "one");
        writeText(resources + "/root/calendars/Account/Work.ics", "work");
        fs::create_directories(bundle);
    }

    std::string prepare() const {
        const auto prepared = prepareRoot(root, resources, bundle);
        return prepared ? "" : prepared.error().localizedDescription;
    }
    /// Every file below the root, with the link but not what is behind it.
    std::set<std::string> files() const {
        std::set<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(root)) {
            if (entry.is_symlink() || !entry.is_directory())
                found.insert(entry.path().lexically_relative(root).string());
        }
        return found;
    }

    const std::set<std::string> freshFiles{
        "Library/PreferenceBundles/Sample.bundle",
        "System/Library/PrivateFrameworks/PreferencesUI.framework/SpeakerMute@2x.png",
        "System/Library/PrivateFrameworks/PreferencesUI.framework/SpeakerMute@3x.png",
        "var/mobile/Library/Calendars/Account/Home/one.ics",
        "var/mobile/Library/Calendars/Account/Work.ics",
        "var/mobile/Library/Preferences/com.velmora.quietrix.plist"};
};

TEST_F(FreshRootTest, rootThatDoesNotExist_isFilledLikeANewPhone) {
    EXPECT_EQ(prepare(), "");
    EXPECT_EQ(files(), freshFiles);
    EXPECT_TRUE(fs::is_directory(root + "/tmp"));
    EXPECT_EQ(readText(root + "/System/Library/PrivateFrameworks/PreferencesUI.framework/SpeakerMute@3x.png"),
              "mute 3");
    EXPECT_EQ(readText(root + "/var/mobile/Library/Calendars/Account/Work.ics"), "work");
    EXPECT_EQ(fs::read_symlink(root + "/Library/PreferenceBundles/Sample.bundle"), fs::canonical(bundle));
}

TEST_F(FreshRootTest, settingsFile_isABinaryListWithTheSwitchTurnedOff) {
    EXPECT_EQ(prepare(), "");
    const std::string text = readText(root + "/var/mobile/Library/Preferences/com.velmora.quietrix.plist");
    const platform::Data data(text.begin(), text.end());
    EXPECT_EQ(*platform::PropertyListSerialization::formatOfData(data), platform::PropertyListFormat::Binary);
    EXPECT_EQ(*platform::PropertyListSerialization::propertyListWithData(data),
              platform::Value(platform::Dictionary{{"com.velmora.quietrix.enabled", false}}));
}

TEST_F(FreshRootTest, emptyRoot_isFilledToo) {
    fs::create_directories(root);
    EXPECT_EQ(prepare(), "");
    EXPECT_EQ(files(), freshFiles);
}

TEST_F(FreshRootTest, rootWithSomethingInIt_getsOnlyTheLink) {
    writeText(root + "/mine", "mine");
    EXPECT_EQ(prepare(), "");
    EXPECT_EQ(files(), (std::set<std::string>{"Library/PreferenceBundles/Sample.bundle", "mine"}));
}

TEST_F(FreshRootTest, filledRoot_isNotFilledAgain) {
    EXPECT_EQ(prepare(), "");
    fs::remove_all(root + "/var/mobile/Library/Calendars");
    fs::remove_all(resources);
    EXPECT_EQ(prepare(), "");
    EXPECT_FALSE(fs::exists(root + "/var/mobile/Library/Calendars"));
}

TEST_F(FreshRootTest, link_isRenewedWhenTheBundleIsElsewhere) {
    EXPECT_EQ(prepare(), "");
    const std::string other = base / "other/Sample.bundle";
    fs::create_directories(other);
    bundle = other + "/";
    EXPECT_EQ(prepare(), "");
    EXPECT_EQ(fs::read_symlink(root + "/Library/PreferenceBundles/Sample.bundle"), fs::canonical(other));
    EXPECT_EQ(std::distance(fs::directory_iterator(root + "/Library/PreferenceBundles"), {}), 1);
}

TEST_F(FreshRootTest, directoryWhereTheLinkBelongs_isLeftAndNamed) {
    writeText(root + "/Library/PreferenceBundles/Sample.bundle/file", "x");
    EXPECT_THAT(prepare(), testing::HasSubstr("Sample.bundle\" could not be linked to"));
    EXPECT_EQ(files(), std::set<std::string>{"Library/PreferenceBundles/Sample.bundle/file"});
}

TEST_F(FreshRootTest, badRootBundleOrResources_areOneSentenceEach) {
    writeText(base / "file", "x");
    EXPECT_EQ(prepareRoot(base / "file", resources, bundle).error().localizedDescription,
              "The root \"" + (base / "file") + "\" is not a directory.");
    EXPECT_EQ(prepareRoot(base / "file/below", resources, bundle).error().localizedDescription,
              "\"" + (base / "file/below") + "\" could not be created: Not a directory.");
    EXPECT_EQ(prepareRoot(root, resources, base / "none").error().localizedDescription,
              "The bundle \"" + (base / "none") + "\" is not a directory.");
    EXPECT_EQ(prepareRoot(root, base / "none", bundle).error().localizedDescription,
              "\"" + (base / "none/root") + "\" could not be read: No such file or directory.");
}

TEST_F(FreshRootTest, fillingThatFailed_isDoneAgainTheNextTime) {
    EXPECT_FALSE(prepareRoot(root, base / "none", bundle));
    EXPECT_EQ(prepare(), "");
    EXPECT_EQ(files(), freshFiles);
}

TEST_F(FreshRootTest, killedInTheMiddle_isRefilledTheNextTime) {
    for (int i = 0; i < 100; ++i) {
        writeText(resources + "/root/calendars/Account/Home/" + std::to_string(i) + ".ics", "event");
    }
    std::set<std::string> expected = freshFiles;
    for (int i = 0; i < 100; ++i) {
        expected.insert("var/mobile/Library/Calendars/Account/Home/" + std::to_string(i) + ".ics");
    }
    for (int round = 0; round < 15; ++round) {
        fs::remove_all(root);
        Child child({"prepare", root, resources, bundle});
        // Spread over the steps; which of them is hit does not matter to what must hold.
        std::this_thread::sleep_for(std::chrono::milliseconds(round));
        child.signal(SIGKILL);
        child.wait();
        EXPECT_EQ(prepare(), "");
        EXPECT_EQ(files(), expected);
    }
}

TEST_F(FreshRootTest, severalProcessesAtOnce_fillItOnce) {
    std::vector<std::unique_ptr<Child>> children;
    for (int i = 0; i < 4; ++i) {
        children.push_back(
            std::make_unique<Child>(std::vector<std::string>{"prepare", root, resources, bundle}));
    }
    for (const auto& child : children) EXPECT_EQ(child->wait(), 0);
    EXPECT_EQ(files(), freshFiles);
}

}  // namespace
