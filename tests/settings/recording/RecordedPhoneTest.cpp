// SPDX-License-Identifier: MIT
// What is under a recorded phone: its time, notifications, shell and files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "device/PhonePaths.h"
#include "device/RootFileSystem.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/RunLoop.h"
#include "settings/recording/FileWatch.h"
#include "settings/recording/HeldNotifications.h"
#include "settings/recording/RecordedRoot.h"
#include "settings/recording/RecordedShell.h"
#include "settings/recording/RecordedTime.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using device::DatagramTransport;
using platform::RunLoop;
using settings::FileWatch;
using settings::HeldNotifications;
using settings::RecordedShell;
using settings::RecordedTime;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::TemporaryDirectory;
using Names = std::vector<std::string>;

constexpr const char* applied = "com.velmora.ProfileAppliedStateChangedNotification";

TEST(RecordedTime, texts_areReadToTheMillisecond) {
    const auto whole = RecordedTime::parse("2026-11-20T09:00:00.000");
    const auto later = RecordedTime::parse("2026-11-20T09:00:00.125");
    ASSERT_TRUE(whole && later);
    EXPECT_EQ(later->secondsSinceReference - whole->secondsSinceReference, 0.125);
    for (const char* text : {"", ".125", "2026-11-20T09:00:00", "2026-11-20T09:00:00,125",
                             "2026-11-20T09:00:00.12x", "2026-13-20T09:00:00.125"})
        EXPECT_FALSE(RecordedTime::parse(text)) << text;
    const std::string now = RecordedTime::textOfNow();
    EXPECT_TRUE(RecordedTime::parse(now)) << now;
}

TEST(RecordedTime, goOnTo_makesDelayedCallsAtTheirInstantsAndTheJournalCountsThem) {
    doubles::Phone phone;
    RecordedTime time({1000});
    platform::Device device = platform::Device::current();
    device.clock = time.clock();
    platform::Device::install(device);
    RunLoop::main().performAfterDelay(0.25, [] { platform::Journal::shared().record("called"); });
    time.goOnTo(200);
    EXPECT_THAT(phone.takeEvents("called"), IsEmpty());
    time.goOnTo(1000);
    const auto entries = platform::Journal::shared().take();
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].at, 250);
    time.goOnTo(500);
    EXPECT_EQ(time.milliseconds(), 1000);
    EXPECT_EQ(time.clock()->now().secondsSinceReference, 1001);
}

TEST(HeldNotifications, whatOthersPost_isHeldAndOwnPostsComeBackAtOnce) {
    const TemporaryDirectory root;
    HeldNotifications held(
        std::make_unique<DatagramTransport>(root.path().string(), DatagramTransport::OwnPosts::StayAway));
    Names heard;
    Names received;
    held.setListener([&](const std::string& name) { heard.push_back(name); });
    ASSERT_TRUE(held.start([&](const std::string& name) { received.push_back(name); }));
    held.post("own");
    EXPECT_THAT(received, ElementsAre("own"));
    DatagramTransport other(root.path().string());
    other.post("theirs");
    EXPECT_TRUE(RunLoop::main().runUntil([&] { return held.holdsAny(); }, std::chrono::minutes(1)));
    EXPECT_THAT(received, ElementsAre("own"));
    EXPECT_THAT(held.takeHeld(), ElementsAre("theirs"));
    EXPECT_FALSE(held.holdsAny());
    held.deliver("theirs");
    EXPECT_THAT(received, ElementsAre("own", "theirs"));
    EXPECT_EQ(heard, received);
}

class RecordedShellTest : public testing::Test {
  protected:
    RecordedShellTest() {
        shell.setFiles(files, {});
        EXPECT_TRUE(notifications->start([this](const std::string& name) { received.push_back(name); }));
        phone.drain();
    }
    std::string log() const {
        const auto data = files->read(device::phonePaths::shellLog);
        return data ? std::string(data->begin(), data->end()) : std::string();
    }
    std::vector<std::string> states() {
        std::vector<std::string> states;
        for (const auto& event : phone.takeEvents("process")) states.push_back(event.at("state").stringOr());
        return states;
    }

    doubles::Phone phone;
    TemporaryDirectory root;
    std::shared_ptr<device::RootFileSystem> files =
        std::make_shared<device::RootFileSystem>(root.path().string());
    std::shared_ptr<device::VirtualClock> clock = std::make_shared<device::VirtualClock>(platform::Date{0.5});
    std::shared_ptr<HeldNotifications> notifications = std::make_shared<HeldNotifications>(nullptr);
    RecordedShell shell{notifications, clock};
    Names received;
};

TEST_F(RecordedShellTest, whatItObserves_isLoggedAtTheRecordedTime) {
    notifications->post(applied);
    notifications->deliver("com.velmora.ProfileAddedNotification");
    notifications->post("com.velmora.Other");
    EXPECT_EQ(log(), "2001-01-01T00:00:00Z " + std::string(applied) +
                         "\n2001-01-01T00:00:00Z com.velmora.ProfileAddedNotification\n");
}

TEST_F(RecordedShellTest, killed_isBackAndTellsTheScreens) {
    EXPECT_THAT(states(), ElementsAre("started"));
    EXPECT_FALSE(shell.killProcessByName("Other"));
    EXPECT_TRUE(shell.killProcessByName("SpringBoard"));
    EXPECT_THAT(received, IsEmpty());
    phone.drain();
    EXPECT_THAT(states(), ElementsAre("ended", "started"));
    EXPECT_THAT(received, ElementsAre(applied));
}

TEST(FileWatch, othersChanges_areToldOnceAndOwnOnesNot) {
    const TemporaryDirectory root;
    const auto files = std::make_shared<device::RootFileSystem>(root.path().string());
    ASSERT_TRUE(files->createDirectory("/d"));
    FileWatch watch(files);
    const auto own = watch.notingFiles();
    watch.setPaths({"/d/a", "/b"});
    ASSERT_TRUE(own->write("/d/a", {1}, platform::Write::Atomically));
    EXPECT_FALSE(watch.hasChanged());
    {
        // The file has one name more then, and one less, which its stamp tells.
        const auto history = own->openHistory("/d/a", platform::Missing::Make);
        ASSERT_TRUE(history && *history);
        const auto stamp = files->stamp("/d/a");
        ASSERT_TRUE((*history)->keep("1"));
        EXPECT_NE(stamp, files->stamp("/d/a"));
        EXPECT_FALSE(watch.hasChanged());
        ASSERT_TRUE((*history)->remove("1"));
        EXPECT_FALSE(watch.hasChanged());
    }
    ASSERT_TRUE(files->write("/b", {2}, platform::Write::Atomically));
    EXPECT_TRUE(watch.hasChanged());
    // The same paths again forget nothing.
    watch.setPaths({"/d/a", "/b", "/c"});
    EXPECT_THAT(watch.takeChanged(), ElementsAre("/b"));
    EXPECT_THAT(watch.takeChanged(), IsEmpty());
    ASSERT_TRUE(own->remove("/d"));
    EXPECT_FALSE(watch.hasChanged());
    ASSERT_TRUE(files->remove("/b"));
    EXPECT_THAT(watch.takeChanged(), ElementsAre("/b"));
}

TEST(RecordedRoot, files_areThereAgainUntilTheRootGoes) {
    const TemporaryDirectory directory;
    testing_support::writeText(directory / "var/mobile/a.plist", "text");
    testing_support::writeText(directory / "private/var/run/notifications/x.spill", "no");
    testing_support::writeText(directory / ".locks/a", "no");
    testing_support::writeText(directory / "var/mobile/.locks/a.plist", "no");
    testing_support::writeText(directory / "var/mobile/.a.plist.history/1", "no");
    std::filesystem::create_symlink(directory / "var/mobile/a.plist", directory.path() / "link");
    const auto files = settings::filesOfRoot(directory.path().string());
    ASSERT_TRUE(files) << files.error().localizedDescription;
    EXPECT_EQ(*files, (settings::RootFiles{{"/var/mobile/a.plist", {'t', 'e', 'x', 't'}}}));
    std::string path;
    {
        const auto root = settings::TemporaryRoot::create(*files);
        ASSERT_TRUE(root) << root.error().localizedDescription;
        path = root->path();
        EXPECT_EQ(settings::filesOfRoot(path), files);
    }
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(settings::TemporaryRoot::create({{"/../a", {}}}));
}

}  // namespace
