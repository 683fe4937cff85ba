// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <set>
#include <string_view>
#include <thread>

#include "device/FreshRoot.h"
#include "device/RootLink.h"
#include "platform/foundation/PropertyList.h"
#include "tests/device/Child.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using doubles::errorOf;
using doubles::required;

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
        writeText(given("SpeakerMute@2x.png"), "mute 2");
        writeText(given("SpeakerMute@3x.png"), "mute 3");
        writeText(given("notes.txt"), "no image");
        writeText(given("calendars/Account/Home/one.ics"), "one");
        writeText(given("calendars/Account/Work.ics"), "work");
        fs::create_directories(bundle);
    }

    /// A file among those that a fresh root is filled with.
    std::string given(std::string_view name) const { return fs::path(resources) / "root" / name; }

    std::string prepare() const {
        const auto prepared = prepareRoot(root, resources, bundle);
        return prepared ? "" : prepared.error().localizedDescription;
    }
    /// Every file below the root, with the link but not what is behind it, and without the locks.
    std::set<std::string> files() const {
        std::set<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(root)) {
            if (entry.path().parent_path().filename() == ".locks") continue;
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
    EXPECT_EQ(*required(platform::PropertyListSerialization::formatOfData(data)),
              platform::PropertyListFormat::Binary);
    EXPECT_EQ(*required(platform::PropertyListSerialization::propertyListWithData(data)),
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
    EXPECT_EQ(errorOf(prepareRoot(base / "file", resources, bundle)),
              "The root \"" + (base / "file") + "\" is not a directory.");
    EXPECT_EQ(errorOf(prepareRoot(base / "file/below", resources, bundle)),
              "\"" + (base / "file/below") + "\" could not be created: Not a directory.");
    EXPECT_EQ(errorOf(prepareRoot(root, resources, base / "none")),
              "The bundle \"" + (base / "none") + "\" is not a directory.");
    EXPECT_EQ(errorOf(prepareRoot(root, base / "none", bundle)),
              "\"" + (base / "none/root") + "\" could not be read: No such file or directory.");
}

TEST_F(FreshRootTest, fillingThatFailed_isDoneAgainTheNextTime) {
    EXPECT_FALSE(prepareRoot(root, base / "none", bundle));
    EXPECT_EQ(prepare(), "");
    EXPECT_EQ(files(), freshFiles);
}

TEST_F(FreshRootTest, killedInTheMiddle_isRefilledTheNextTime) {
    for (int i = 0; i < 100; ++i) {
        writeText(given("calendars/Account/Home/") + std::to_string(i) + ".ics", "event");
    }
    std::set<std::string> expected = freshFiles;
    for (int i = 0; i < 100; ++i) {
        expected.insert("var/mobile/Library/Calendars/Account/Home/" + std::to_string(i) + ".ics");
    }
    for (int round = 0; round < 15; ++round) {
        fs::remove_all(root);
        Child child({"prepare", root, resources, bundle});
        // Not for a condition: the kill is to hit each step. Which one it is does not matter to what must
        // hold.
        std::this_thread::sleep_for(std::chrono::milliseconds(round));
        child.signal(SIGKILL);
        child.wait();
        EXPECT_EQ(prepare(), "");
        EXPECT_EQ(files(), expected);
    }
}

TEST_F(FreshRootTest, everythingMade_isForItsOwnerOnly) {
    EXPECT_EQ(prepare(), "");
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        if (entry.is_symlink()) continue;
        EXPECT_EQ(entry.status().permissions(), static_cast<fs::perms>(entry.is_directory() ? 0700 : 0600))
            << entry.path();
    }
    EXPECT_EQ(fs::status(root).permissions(), static_cast<fs::perms>(0700));
}

TEST_F(FreshRootTest, rootThatIsReady_isNotLockedAtAll) {
    EXPECT_EQ(prepare(), "");
    const auto held = device::lockRoot(root);
    ASSERT_TRUE(held);
    EXPECT_EQ(prepare(), "");
}

TEST_F(FreshRootTest, directoriesLockedByOthers_areNotWaitedFor) {
    fs::create_directories(root + "/Library/PreferenceBundles");
    std::vector<device::Descriptor> locked;
    for (const char* directory : {"", "/Library", "/Library/PreferenceBundles"}) {
        locked.emplace_back(open((root + directory).c_str(), O_RDONLY | O_CLOEXEC));
        ASSERT_EQ(flock(locked.back().get(), LOCK_EX | LOCK_NB), 0);
    }
    EXPECT_EQ(prepare(), "");
}

TEST_F(FreshRootTest, rootOfAnotherUsersLocks_isNamedWithTheirPath) {
    // Files of two users are needed.
    if (geteuid() != 0) GTEST_SKIP() << "only the superuser can give a file to another user";
    fs::create_directories(root + "/.locks");
    ASSERT_EQ(chown((root + "/.locks").c_str(), 65534, 65534), 0);
    EXPECT_EQ(prepare(), "\"" + root + "\" could not be locked: \"" + root +
                             "/.locks\" belongs to another user (65534).");
    EXPECT_FALSE(fs::exists(root + "/var"));
}

TEST_F(FreshRootTest, rootWithNothingButTheNotificationsOfALivingProgram_isFilled) {
    fs::create_directories(root + "/.locks");
    fs::create_directories(root + "/private/var/run/notifications/1-aa.spill");
    writeText(root + "/private/var/run/notifications/1-aa.socket", "");
    EXPECT_EQ(prepare(), "");
    EXPECT_TRUE(fs::exists(root + "/var/mobile/Library/Preferences/com.velmora.quietrix.plist"));
}

TEST_F(FreshRootTest, rootWithMoreThanTheNotifications_isLeftAsItIs) {
    for (const char* more : {"/private/var/root/facts", "/private/other", "/private/var/run/x"}) {
        fs::remove_all(root);
        fs::create_directories(root + "/private/var/run/notifications");
        writeText(root + more, "");
        EXPECT_EQ(prepare(), "");
        EXPECT_FALSE(fs::exists(root + "/var")) << more;
    }
}

TEST_F(FreshRootTest, temporaryLinksThatAreTaken_areLeftAndTheNextIsTried) {
    const std::string bundles = root + "/Library/PreferenceBundles/";
    writeText(bundles + ".Sample.bundle.0.new/file", "somebody's");
    fs::create_symlink("left behind", bundles + ".Sample.bundle.1.new");
    EXPECT_EQ(prepare(), "");
    EXPECT_EQ(fs::read_symlink(bundles + "Sample.bundle"), fs::canonical(bundle));
    EXPECT_EQ(files(), (std::set<std::string>{"Library/PreferenceBundles/.Sample.bundle.0.new/file",
                                              "Library/PreferenceBundles/Sample.bundle"}));
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

TEST_F(FreshRootTest, unfilled_isWhatWouldBeFilled) {
    EXPECT_TRUE(device::isUnfilledRoot(root).value());
    EXPECT_FALSE(fs::exists(root));
    fs::create_directories(fs::path(root) / "private/var/run/notifications");
    EXPECT_TRUE(device::isUnfilledRoot(root).value());
    EXPECT_EQ("", prepare());
    EXPECT_FALSE(device::isUnfilledRoot(root).value());
    writeText(root + "/.filling", "");
    EXPECT_TRUE(device::isUnfilledRoot(root).value());
    EXPECT_FALSE(device::isUnfilledRoot(base.write("file", "no directory")));
}

}  // namespace
