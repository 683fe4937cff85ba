// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

#include "device/DatagramTransport.h"
#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/RunLoop.h"
#include "tests/device/Child.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using doubles::errorOf;

namespace fs = std::filesystem;
using device::DatagramTransport;
using testing::ElementsAre;
using testing::UnorderedElementsAreArray;
using testing_support::Child;
using testing_support::TemporaryDirectory;
using Names = std::vector<std::string>;

/// What a transport of this process received.
class Inbox {
  public:
    DatagramTransport::Receiver receiver() {
        return [this](const std::string& name) {
            const std::lock_guard lock(mutex_);
            names_.push_back(name);
            arrived_.notify_all();
        };
    }
    /// Waits for so many names; fewer when they do not come for a long time.
    Names waitFor(std::size_t count) {
        std::unique_lock lock(mutex_);
        arrived_.wait_for(lock, std::chrono::seconds(60), [&] { return names_.size() >= count; });
        return names_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    Names names_;
};

Names numbered(const std::string& prefix, int count) {
    Names names;
    for (int i = 0; i < count; ++i) names.push_back(prefix + std::to_string(i));
    return names;
}

class DatagramTransportTest : public testing::Test {
  protected:
    TemporaryDirectory root;

    std::string directory() const { return root / "private/var/run/notifications"; }
    std::size_t entries() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory()), {}));
    }
    std::unique_ptr<Child> startPeer(const Names& arguments) const {
        auto peer = std::make_unique<Child>(arguments);
        EXPECT_EQ(peer->readLine(), "ready");
        return peer;
    }
    std::unique_ptr<Child> startReceiver() const { return startPeer({"receive", root.path().string()}); }
};

TEST_F(DatagramTransportTest, post_reachesThisProcessAndEveryOther) {
    Inbox inbox;
    DatagramTransport transport(root.path().string());
    ASSERT_TRUE(transport.start(inbox.receiver()));
    const auto first = startReceiver();
    const auto second = startReceiver();
    transport.post("com.velmora.Name");
    EXPECT_THAT(inbox.waitFor(1), ElementsAre("com.velmora.Name"));
    EXPECT_EQ(first->readLine(), "com.velmora.Name");
    EXPECT_EQ(second->readLine(), "com.velmora.Name");
}

TEST_F(DatagramTransportTest, ownPostsThatStayAway_reachOnlyTheOthers) {
    // Before the transports, whose threads put into them until they end.
    Inbox own;
    Inbox others;
    DatagramTransport apart(root.path().string(), DatagramTransport::OwnPosts::StayAway);
    DatagramTransport other(root.path().string());
    ASSERT_TRUE(apart.start(own.receiver()));
    ASSERT_TRUE(other.start(others.receiver()));
    apart.post("mine");
    EXPECT_THAT(others.waitFor(1), ElementsAre("mine"));
    other.post("theirs");
    EXPECT_THAT(own.waitFor(1), ElementsAre("theirs"));
}

TEST_F(DatagramTransportTest, directory_isPrivate) {
    fs::create_directories(directory());
    DatagramTransport transport(root.path().string());
    ASSERT_TRUE(transport.start([](const std::string&) {}));
    EXPECT_EQ(fs::status(directory()).permissions(), fs::perms::owner_all);
}

TEST_F(DatagramTransportTest, hasPending_trueFromThePostingToTheDelivery) {
    std::mutex held;
    Inbox inbox;
    DatagramTransport transport(root.path().string());
    ASSERT_TRUE(transport.start([&, deliver = inbox.receiver()](const std::string& name) {
        const std::lock_guard wait(held);
        deliver(name);
    }));
    EXPECT_FALSE(transport.hasPending());
    for (int round = 1; round <= 200; ++round) {
        {
            const std::lock_guard wait(held);
            transport.post("N");
            EXPECT_TRUE(transport.hasPending());
        }
        while (transport.hasPending()) std::this_thread::yield();
        EXPECT_EQ(inbox.waitFor(0).size(), static_cast<std::size_t>(round));
    }
}

TEST_F(DatagramTransportTest, stoppedReceiver_losesNothingOnceItContinues) {
    const auto receiver = startReceiver();
    receiver->signal(SIGSTOP);
    int status = 0;
    ASSERT_EQ(waitpid(receiver->pid(), &status, WUNTRACED), receiver->pid());

    // That these return at all while the receiver is stopped is what says that a poster never waits.
    DatagramTransport transport(root.path().string());
    constexpr int count = 500;
    for (const std::string& name : numbered("own-", count)) transport.post(name);
    Child first({"post", root.path().string(), "first-", std::to_string(count)});
    Child second({"post", root.path().string(), "second-", std::to_string(count)});
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(second.wait(), 0);

    receiver->signal(SIGCONT);
    std::set<std::string> expected;
    for (const char* prefix : {"own-", "first-", "second-"}) {
        for (const std::string& name : numbered(prefix, count)) expected.insert(name);
    }
    Names received;
    while (received.size() < expected.size()) {
        const auto name = receiver->readLine();
        ASSERT_TRUE(name) << "only " << received.size() << " names came";
        received.push_back(*name);
    }
    EXPECT_EQ(std::set<std::string>(received.begin(), received.end()), expected);
    receiver->closeInput();
    EXPECT_THAT(receiver->readLines(), ElementsAre());
}

TEST_F(DatagramTransportTest, stoppedReceiver_getsEqualNamesMerged) {
    const auto receiver = startReceiver();
    receiver->signal(SIGSTOP);
    int status = 0;
    ASSERT_EQ(waitpid(receiver->pid(), &status, WUNTRACED), receiver->pid());
    DatagramTransport transport(root.path().string());
    for (int i = 0; i < 300; ++i) transport.post(i % 2 == 0 ? "even" : "odd");
    std::size_t spilled = 0;
    for (const auto& entry : fs::directory_iterator(directory())) {
        if (entry.is_directory())
            spilled += static_cast<std::size_t>(std::distance(fs::directory_iterator(entry), {}));
    }
    EXPECT_LE(spilled, 2U);
    receiver->signal(SIGCONT);
    receiver->closeInput();
    EXPECT_THAT(receiver->readLines(), UnorderedElementsAreArray(Names{"even", "odd"}));
}

TEST_F(DatagramTransportTest, stoppedReceiver_doesNotHoldUpTheOthers) {
    std::vector<std::unique_ptr<Child>> stopped;
    for (int i = 0; i < 4; ++i) {
        stopped.push_back(startReceiver());
        stopped.back()->signal(SIGSTOP);
    }
    Inbox inbox;
    DatagramTransport transport(root.path().string());
    ASSERT_TRUE(transport.start(inbox.receiver()));
    const Names names = numbered("n", 300);
    for (const std::string& name : names) transport.post(name);
    EXPECT_THAT(inbox.waitFor(names.size()), UnorderedElementsAreArray(names));
}

TEST_F(DatagramTransportTest, severalProcessesPostingToEachOtherAtOnce_loseNothing) {
    constexpr int processes = 4;
    constexpr int count = 300;
    std::vector<std::unique_ptr<Child>> peers;
    for (int i = 0; i < processes; ++i) {
        peers.push_back(startPeer(
            {"exchange", root.path().string(), "p" + std::to_string(i) + "-", std::to_string(count)}));
    }
    std::set<std::string> expected;
    for (int i = 0; i < processes; ++i) {
        for (const std::string& name : numbered("p" + std::to_string(i) + "-", count)) expected.insert(name);
        peers[static_cast<std::size_t>(i)]->writeLine();
    }
    for (const auto& peer : peers) {
        std::set<std::string> received;
        while (received.size() < expected.size()) {
            const auto name = peer->readLine();
            ASSERT_TRUE(name) << "only " << received.size() << " names came";
            received.insert(*name);
        }
        EXPECT_EQ(received, expected);
    }
}

TEST_F(DatagramTransportTest, killedProcess_leavesASocketThatTheNextPosterRemoves) {
    auto killed = startReceiver();
    const auto living = startReceiver();
    EXPECT_EQ(entries(), 2U);
    killed->signal(SIGKILL);
    killed->wait();
    EXPECT_EQ(entries(), 2U);
    DatagramTransport transport(root.path().string());
    transport.post("N");
    EXPECT_EQ(living->readLine(), "N");
    EXPECT_EQ(entries(), 1U);
}

TEST_F(DatagramTransportTest, processKilledWhileItsSocketWasFull_leavesNothingAfterTheNextPost) {
    auto killed = startReceiver();
    killed->signal(SIGSTOP);
    DatagramTransport transport(root.path().string());
    for (const std::string& name : numbered("n", 100)) transport.post(name);
    EXPECT_EQ(entries(), 2U);
    killed->signal(SIGKILL);
    killed->wait();
    transport.post("N");
    EXPECT_EQ(entries(), 0U);
}

TEST_F(DatagramTransportTest, start_removesWhatProcessesKilledBetweenTwoStepsLeft) {
    testing_support::writeText(directory() + "/1-aa.new", "");
    testing_support::writeText(directory() + "/1-bb.spill/x", "");
    DatagramTransport transport(root.path().string());
    ASSERT_TRUE(transport.start([](const std::string&) {}));
    EXPECT_EQ(entries(), 1U);
}

TEST_F(DatagramTransportTest, cleanEnd_leavesNothing) {
    {
        DatagramTransport transport(root.path().string());
        ASSERT_TRUE(transport.start([](const std::string&) {}));
        transport.post("N");
    }
    EXPECT_EQ(entries(), 0U);
    const auto receiver = startReceiver();
    receiver->closeInput();
    EXPECT_EQ(receiver->wait(), 0);
    EXPECT_EQ(entries(), 0U);
}

TEST_F(DatagramTransportTest, rootWithALongPath_worksAllTheSame) {
    std::string longRoot = root.path().string();
    for (int i = 0; i < 8; ++i) longRoot += "/" + std::string(60, 'x');
    fs::create_directories(longRoot);
    Inbox inbox;
    DatagramTransport transport(longRoot);
    ASSERT_TRUE(transport.start(inbox.receiver()));
    const auto peer = startPeer({"receive", longRoot});
    transport.post("N");
    EXPECT_THAT(inbox.waitFor(1), ElementsAre("N"));
    EXPECT_EQ(peer->readLine(), "N");
}

TEST_F(DatagramTransportTest, socketFiles_areForTheirOwnerOnly) {
    DatagramTransport transport(root.path().string());
    ASSERT_TRUE(transport.start([](const std::string&) {}));
    const auto socket = *fs::directory_iterator(directory());
    EXPECT_EQ(socket.status().permissions(), static_cast<fs::perms>(0600));
}

/// A root that can be taken away while a transport of this process and another process listen there.
class MovedRoot : public DatagramTransportTest {
  protected:
    doubles::Phone phone;
    fs::path phoneRoot = root / "phone";
    fs::path folder = phoneRoot / "private/var/run/notifications";
    Inbox inbox;
    std::unique_ptr<DatagramTransport> transport;
    std::unique_ptr<Child> peer;

    MovedRoot() {
        fs::create_directories(phoneRoot);
        transport = std::make_unique<DatagramTransport>(phoneRoot.string());
        EXPECT_TRUE(transport->start(inbox.receiver()));
        peer = startPeer({"exchange", phoneRoot.string(), "peer-", "1"});
    }
    /// In one step: a folder that is being emptied may get a new socket meanwhile.
    void takeAway(const fs::path& path) { fs::rename(path, root / ("aside" + std::to_string(++asides))); }
    int asides = 0;
    std::size_t sockets() const {
        std::error_code error;
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(folder, error))
            count += entry.path().extension() == ".socket" ? 1 : 0;
        return count;
    }
    /// Both look for themselves, without a post.
    void waitUntilBothListen() const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (sockets() < 2 && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
        ASSERT_EQ(sockets(), 2U);
    }
    void expectToHearEachOther() {
        waitUntilBothListen();
        transport->post("N");
        EXPECT_EQ(peer->readLine(), "N");
        peer->writeLine();
        EXPECT_THAT(inbox.waitFor(2), UnorderedElementsAreArray(Names{"N", "peer-0"}));
        ASSERT_EQ(phone.log->lines().size(), 1U);
        EXPECT_THAT(phone.log->lines()[0], testing::HasSubstr("\"" + folder.string() + "\""));
    }
};

TEST_F(MovedRoot, folderTakenAway_isMadeAnewAndHeardAgain) {
    takeAway(folder);
    expectToHearEachOther();
}

TEST_F(MovedRoot, folderPutAsideForAnother_isLeftForTheNewOne) {
    takeAway(folder);
    fs::create_directory(folder);
    expectToHearEachOther();
    // Nothing of theirs stays behind.
    while (!fs::is_empty(root / "aside1")) std::this_thread::yield();
}

TEST_F(MovedRoot, rootMadeAnew_isHeardAgain) {
    takeAway(phoneRoot);
    fs::create_directory(phoneRoot);
    expectToHearEachOther();
}

TEST_F(MovedRoot, socketsTakenAway_areMadeAnew) {
    for (const auto& entry : fs::directory_iterator(folder)) fs::remove(entry);
    expectToHearEachOther();
}

TEST_F(MovedRoot, nextPost_goesThroughTheNewFolderAndIsHeardByItsPoster) {
    for (int round = 1; round <= 20; ++round) {
        takeAway(folder);
        transport->post("N");
        EXPECT_EQ(inbox.waitFor(static_cast<std::size_t>(round)).size(), static_cast<std::size_t>(round));
    }
    EXPECT_EQ(phone.log->lines().size(), 20U);
}

TEST_F(MovedRoot, nextPost_isPending) {
    for (int round = 1; round <= 50; ++round) {
        takeAway(folder);
        transport->post("N");
        while (transport->hasPending()) std::this_thread::yield();
        EXPECT_EQ(inbox.waitFor(0).size(), static_cast<std::size_t>(round));
    }
}

TEST_F(MovedRoot, whatHadArrivedInTheOldFolder_isStillDelivered) {
    std::mutex held;
    Inbox second;
    DatagramTransport slow(phoneRoot.string());
    ASSERT_TRUE(slow.start([&, deliver = second.receiver()](const std::string& name) {
        const std::lock_guard wait(held);
        deliver(name);
    }));
    const Names names = numbered("n", 50);
    {
        const std::lock_guard wait(held);
        for (const std::string& name : names) slow.post(name);
        takeAway(folder);
        slow.post("last");
    }
    Names all = names;
    all.emplace_back("last");
    EXPECT_THAT(second.waitFor(all.size()), UnorderedElementsAreArray(all));
}

TEST_F(MovedRoot, rootThatIsGone_isNotMadeByWhoeverStillPosts) {
    takeAway(phoneRoot);
    transport->post("N");
    ASSERT_EQ(phone.log->lines().size(), 1U);
    EXPECT_THAT(phone.log->lines()[0], testing::HasSubstr("was not posted"));
    EXPECT_FALSE(fs::exists(phoneRoot));
    // The old root, put back, is the one again.
    fs::rename(root / "aside1", phoneRoot);
    transport->post("back");
    EXPECT_EQ(peer->readLine(), "back");
}

TEST_F(DatagramTransportTest, namesThatCannotBeCarried_areLoggedAndNotSent) {
    doubles::Phone phone;
    Inbox inbox;
    DatagramTransport transport(root.path().string());
    ASSERT_TRUE(transport.start(inbox.receiver()));
    transport.post("");
    transport.post(std::string(DatagramTransport::maximumNameLength + 1, 'x'));
    transport.post(std::string("a\0b", 3));
    EXPECT_EQ(phone.log->lines().size(), 3U);
    const std::string longest(DatagramTransport::maximumNameLength, 'x');
    transport.post(longest);
    EXPECT_THAT(inbox.waitFor(1), ElementsAre(longest));
}

TEST_F(DatagramTransportTest, namesOfAnyBytes_surviveAFullSocket) {
    const Names names{"../up", ".", "a/b/c", "\xff\xfe", "with blank", std::string(1024, '/')};
    Names all = numbered("n", 50);
    all.insert(all.end(), names.begin(), names.end());
    std::mutex held;
    Inbox inbox;
    DatagramTransport transport(root.path().string());
    ASSERT_TRUE(transport.start([&, deliver = inbox.receiver()](const std::string& name) {
        const std::lock_guard wait(held);
        deliver(name);
    }));
    {
        const std::lock_guard wait(held);
        for (const std::string& name : all) transport.post(name);
    }
    EXPECT_THAT(inbox.waitFor(all.size()), UnorderedElementsAreArray(all));
}

TEST_F(DatagramTransportTest, directoryThatCannotBeMade_isOneSentence) {
    testing_support::writeText(root / "private", "a file");
    DatagramTransport transport(root.path().string());
    const auto started = transport.start([](const std::string&) {});
    ASSERT_FALSE(started);
    EXPECT_EQ(errorOf(started),
              "The notifications directory \"" + directory() + "\" could not be opened: Not a directory.");
}

TEST_F(DatagramTransportTest, drain_deliversWhatThisProcessPostedEvenFromBackgroundWork) {
    doubles::Phone phone;
    platform::DarwinNotificationCenter& center = platform::DarwinNotificationCenter::shared();
    center.reset();
    platform::Device device = platform::Device::current();
    device.notifications = std::make_shared<DatagramTransport>(root.path().string());
    platform::Device::install(device);
    ASSERT_TRUE(center.connect());
    for (int round = 0; round < 100; ++round) {
        phone.takeEvents();
        const Names names = numbered("n", 30);
        platform::GlobalQueue::shared().async([&] {
            for (const std::string& name : names) center.post(name);
        });
        phone.drain();
        EXPECT_EQ(phone.takeEvents("darwinReceived").size(), names.size());
    }
}

}  // namespace
