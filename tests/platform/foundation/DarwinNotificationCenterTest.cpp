// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/RunLoop.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"

namespace {

using doubles::errorOf;
using platform::CFNotificationSuspensionBehavior;
using platform::DarwinNotificationCenter;
using platform::Dictionary;
using platform::Value;
using Names = std::vector<std::string>;

/// The observer that the callbacks below are given.
struct Calls {
    Names names;
    /// Posted once, from within the first callback.
    std::string postOnce;
};

void note(DarwinNotificationCenter& center, void* observer, const std::string& name, const void* object,
          const Value& userInfo) {
    EXPECT_TRUE(platform::RunLoop::main().isCurrent());
    EXPECT_EQ(object, nullptr);
    EXPECT_TRUE(userInfo.isNil());
    auto& calls = *static_cast<Calls*>(observer);
    calls.names.push_back(name);
    if (!calls.postOnce.empty()) center.post(std::exchange(calls.postOnce, {}));
}

void noteSecond(DarwinNotificationCenter& /*center*/, void* observer, const std::string& name,
                const void* /*object*/, const Value& /*userInfo*/) {
    static_cast<Calls*>(observer)->names.push_back("second " + name);
}

class DarwinNotificationCenterTest : public testing::Test {
  protected:
    doubles::Phone phone;
    Calls calls;
    DarwinNotificationCenter& center = platform::CFNotificationCenterGetDarwinNotifyCenter();

    void observe(const std::string& name, platform::CFNotificationCallback callback = note) {
        platform::CFNotificationCenterAddObserver(center, &calls, callback, name, nullptr,
                                                  CFNotificationSuspensionBehavior::DeliverImmediately);
    }
};

TEST_F(DarwinNotificationCenterTest, post_reachesThisProcessThroughTheMainLoopInTheOrderOfRegistration) {
    observe("N", noteSecond);
    observe("N");
    observe("other");
    platform::CFNotificationCenterPostNotification(center, "N", nullptr, Value(), true);
    EXPECT_TRUE(calls.names.empty());
    phone.drain();
    EXPECT_EQ(calls.names, (Names{"second N", "N"}));
    EXPECT_EQ(phone.notifications->takePosted(), Names{"N"});
}

TEST_F(DarwinNotificationCenterTest, withoutATransport_postReachesThisProcess) {
    center.reset();
    phone.notifications.reset();
    phone.install();
    observe("N");
    center.post("N");
    phone.drain();
    EXPECT_EQ(calls.names, Names{"N"});
}

TEST_F(DarwinNotificationCenterTest, equalNamesThatWait_areDeliveredAsOne) {
    observe("A");
    observe("B");
    for (const char* name : {"A", "B", "A", "A", "B"}) phone.notifications->deliver(name);
    phone.drain();
    EXPECT_EQ(calls.names, (Names{"A", "B"}));
}

TEST_F(DarwinNotificationCenterTest, nameThatIsPostedWhileItIsDelivered_isDeliveredAgain) {
    observe("A");
    calls.postOnce = "A";
    center.post("A");
    phone.drain();
    EXPECT_EQ(calls.names, (Names{"A", "A"}));
}

TEST_F(DarwinNotificationCenterTest, journal_hasPostingAndOneDeliveryForEachName) {
    observe("A");
    observe("A", noteSecond);
    center.post("A");
    phone.notifications->deliver("unobserved");
    phone.drain();
    EXPECT_EQ(phone.takeEvents(),
              (std::vector<Dictionary>{{{"event", "darwin"}, {"name", "A"}},
                                       {{"event", "darwinReceived"}, {"name", "A"}},
                                       {{"event", "darwinReceived"}, {"name", "unobserved"}}}));
}

TEST_F(DarwinNotificationCenterTest, registrations_tellWhatWasRegistered) {
    observe("A");
    const auto registrations = center.registrations();
    ASSERT_EQ(registrations.size(), 1U);
    EXPECT_EQ(registrations[0].name, "A");
    EXPECT_EQ(registrations[0].observer, &calls);
    EXPECT_EQ(registrations[0].suspensionBehavior, CFNotificationSuspensionBehavior::DeliverImmediately);
}

TEST_F(DarwinNotificationCenterTest, registrationAfterThePosting_butBeforeTheDelivery_isCalled) {
    center.post("A");
    observe("A");
    phone.drain();
    EXPECT_EQ(calls.names, Names{"A"});
}

TEST_F(DarwinNotificationCenterTest, reset_dropsWhatWaitsAndWhatAnEarlierTransportStillBrings) {
    observe("A");
    center.post("A");
    const auto earlier = phone.notifications;
    center.reset();
    observe("A");
    earlier->deliver("A");
    phone.drain();
    EXPECT_TRUE(calls.names.empty());
}

TEST_F(DarwinNotificationCenterTest, connect_aTransportThatDoesNotStart_isItsError) {
    center.reset();
    phone.notifications = std::make_shared<doubles::LoopbackTransport>();
    phone.notifications->startFailure = "It does not start.";
    phone.install();
    const auto connected = center.connect();
    ASSERT_FALSE(connected);
    EXPECT_EQ(errorOf(connected), "It does not start.");
}

TEST_F(DarwinNotificationCenterTest, postsFromBackgroundWork_areDeliveredBeforeDrainReturns) {
    observe("A");
    for (int round = 0; round < 50; ++round) {
        calls.names.clear();
        platform::GlobalQueue::shared().async([&] { center.post("A"); });
        phone.drain();
        EXPECT_EQ(calls.names, Names{"A"});
    }
}

}  // namespace
