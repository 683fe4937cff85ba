// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/foundation/NotificationCenter.h"
#include "tests/doubles/Phone.h"

namespace {

using platform::Notification;
using platform::NotificationCenter;
using platform::Object;
using platform::Value;

/// Runs what the test gives it for each notification.
class Observer : public Object {
  public:
    explicit Observer(std::function<void(const Notification&)> action) : action_(std::move(action)) {}
    ~Observer() override { NotificationCenter::defaultCenter().removeObserver(this); }

    void notified(const Notification& notification) { action_(notification); }

  private:
    std::function<void(const Notification&)> action_;
};

class NotificationCenterTest : public testing::Test {
  protected:
    doubles::Phone phone;
    NotificationCenter& center = NotificationCenter::defaultCenter();
    std::vector<std::string> calls;

    std::shared_ptr<Observer> noting(const std::string& text) {
        return std::make_shared<Observer>([this, text](const Notification&) { calls.push_back(text); });
    }
    void observe(const std::shared_ptr<Observer>& observer, std::string_view name,
                 const std::shared_ptr<Object>& object = nullptr) {
        center.addObserver_selector_name_object(observer, platform::method("notified:", &Observer::notified),
                                                name, object);
    }
    void post(std::string_view name, const std::shared_ptr<Object>& object = nullptr,
              const Value& info = {}) {
        center.postNotificationName_object_userInfo(name, object, info);
    }
};

using Names = std::vector<std::string>;

TEST_F(NotificationCenterTest, post_callsMatchingObserversAtOnceInTheOrderOfRegistration) {
    const auto a = noting("a");
    const auto b = noting("b");
    const auto c = noting("c");
    observe(b, "N");
    observe(a, "N");
    observe(c, "other");
    observe(b, "N");
    post("N");
    EXPECT_EQ(calls, (Names{"b", "a", "b"}));
}

TEST_F(NotificationCenterTest, manyNames_areEachDeliveredToTheirOwnObserversWheneverTheseCame) {
    const auto every = noting("every");
    const auto last = noting("last");
    observe(every, "");
    for (int number = 0; number < 200; ++number) post("N" + std::to_string(number));
    EXPECT_EQ(calls, Names(200, "every"));
    calls.clear();
    observe(last, "N199");
    post("N0");
    post("N199");
    EXPECT_EQ(calls, (Names{"every", "every", "last"}));
    calls.clear();
    center.removeObserver(every.get());
    post("N199");
    EXPECT_EQ(calls, Names{"last"});
}

TEST_F(NotificationCenterTest, post_handsOverNameObjectAndUserInfo) {
    const auto sender = std::make_shared<Object>();
    Notification got;
    const auto observer = std::make_shared<Observer>([&](const Notification& n) { got = n; });
    observe(observer, "");
    post("any name", sender, Value(7));
    EXPECT_EQ(got.name, "any name");
    EXPECT_EQ(got.object, sender);
    EXPECT_EQ(got.userInfo, Value(7));
}

TEST_F(NotificationCenterTest, observerOfOneSender_hearsNoOther) {
    auto sender = std::make_shared<Object>();
    const auto a = noting("a");
    observe(a, "N", sender);
    post("N", std::make_shared<Object>());
    post("N");
    EXPECT_TRUE(calls.empty());
    post("N", sender);
    EXPECT_EQ(calls, Names{"a"});
    sender.reset();
    post("N");
    EXPECT_EQ(calls, Names{"a"});
}

TEST_F(NotificationCenterTest, observerRemovedDuringDelivery_isNotCalledAnyMore) {
    const auto second = noting("second");
    const auto first = std::make_shared<Observer>([&](const Notification&) {
        calls.emplace_back("first");
        center.removeObserver(second.get());
    });
    observe(first, "N");
    observe(second, "N");
    post("N");
    EXPECT_EQ(calls, Names{"first"});
}

TEST_F(NotificationCenterTest, observerAddedDuringDelivery_isCalledFromTheNextPostingOn) {
    const auto late = noting("late");
    const auto first = std::make_shared<Observer>([&](const Notification&) {
        if (calls.empty()) observe(late, "N");
        calls.emplace_back("first");
    });
    observe(first, "N");
    post("N");
    EXPECT_EQ(calls, Names{"first"});
    post("N");
    EXPECT_EQ(calls, (Names{"first", "first", "late"}));
}

TEST_F(NotificationCenterTest, observerDestroyedDuringDelivery_isNotCalled) {
    auto second = noting("second");
    const auto first = std::make_shared<Observer>([&](const Notification&) { second.reset(); });
    observe(first, "N");
    observe(second, "N");
    post("N");
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(center.observerCount("N"), 1U);
}

TEST_F(NotificationCenterTest, observerThatDropsItself_livesToTheEndOfItsCall) {
    std::shared_ptr<Observer> self;
    self = std::make_shared<Observer>([&](const Notification&) {
        self.reset();
        calls.emplace_back("still here");
    });
    observe(self, "N");
    post("N");
    EXPECT_EQ(calls, Names{"still here"});
    EXPECT_EQ(center.observerCount("N"), 0U);
}

TEST_F(NotificationCenterTest, observerDestroyed_isNeitherCalledNorCounted) {
    auto observer = noting("gone");
    observe(observer, "N");
    EXPECT_EQ(center.observerCount("N"), 1U);
    observer.reset();
    EXPECT_EQ(center.observerCount("N"), 0U);
    post("N");
    EXPECT_TRUE(calls.empty());
}

TEST_F(NotificationCenterTest, observerCounts_areThoseOfEveryNameWithAnObserver) {
    const auto observer = noting("stays");
    auto gone = noting("gone");
    observe(observer, "N");
    observe(observer, "N");
    observe(observer, "");
    observe(gone, "G");
    gone.reset();
    EXPECT_EQ(center.observerCounts(), (std::map<std::string, std::size_t>{{"", 1}, {"N", 2}}));
}

TEST_F(NotificationCenterTest, postFromWithinADelivery_isDeliveredWithinIt) {
    const auto inner = noting("inner");
    const auto outer = std::make_shared<Observer>([&](const Notification&) {
        calls.emplace_back("begin");
        post("inner");
        calls.emplace_back("end");
    });
    observe(inner, "inner");
    observe(outer, "outer");
    post("outer");
    EXPECT_EQ(calls, (Names{"begin", "inner", "end"}));
}

TEST_F(NotificationCenterTest, noObserver_isIgnored) {
    observe(nullptr, "N");
    post("N");
    EXPECT_EQ(center.observerCount("N"), 0U);
}

TEST_F(NotificationCenterTest, post_isWrittenToTheJournalBeforeWhatItCauses) {
    const auto inner = std::make_shared<Observer>([&](const Notification&) { post("inner"); });
    observe(inner, "outer");
    post("outer");
    const auto events = phone.takeEvents("local");
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0], (platform::Dictionary{{"event", "local"}, {"name", "outer"}}));
    EXPECT_EQ(events[1], (platform::Dictionary{{"event", "local"}, {"name", "inner"}}));
}

TEST_F(NotificationCenterTest, observersComeAndGoOnThreadsWhileOthersPost) {
    std::atomic<int> heard = 0;
    const auto steady = std::make_shared<Observer>([&](const Notification&) { ++heard; });
    observe(steady, "N");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 200; ++i) {
                if (t % 2 == 0) {
                    post("N");
                } else {
                    const auto passing = std::make_shared<Observer>([](const Notification&) {});
                    observe(passing, "N");
                }
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(heard, 400);
    EXPECT_EQ(center.observerCount("N"), 1U);
}

}  // namespace
