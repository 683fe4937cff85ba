// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/foundation/RunLoop.h"
#include "tests/doubles/Phone.h"

namespace {

using namespace std::chrono_literals;
using platform::Date;
using platform::GlobalQueue;
using platform::RunLoop;

class RunLoopTest : public testing::Test {
  protected:
    doubles::Phone phone;
    RunLoop& loop = RunLoop::main();
    std::vector<std::string> done;

    RunLoop::Task note(std::string text) {
        return [this, text = std::move(text)] { done.push_back(text); };
    }
};

using Names = std::vector<std::string>;

TEST_F(RunLoopTest, post_runsLaterInOrderAndWithWhatTasksPost) {
    loop.post([&] {
        done.emplace_back("first");
        loop.post(note("posted by first"));
    });
    loop.post(note("second"));
    EXPECT_TRUE(done.empty());
    loop.drain();
    EXPECT_EQ(done, (Names{"first", "second", "posted by first"}));
}

TEST_F(RunLoopTest, isCurrent_onlyOnTheMainThread) {
    EXPECT_TRUE(loop.isCurrent());
    bool elsewhere = true;
    std::thread([&] { elsewhere = loop.isCurrent(); }).join();
    EXPECT_FALSE(elsewhere);
}

TEST_F(RunLoopTest, performAfterDelay_withAVirtualClock_waitsForTheClock) {
    loop.performAfterDelay(2.0, note("call"));
    loop.drain();
    EXPECT_TRUE(done.empty());
    phone.advance(1.999);
    EXPECT_TRUE(done.empty());
    phone.advance(0.001);
    EXPECT_EQ(done, Names{"call"});
    EXPECT_FALSE(loop.nextTimer());
}

TEST_F(RunLoopTest, performAfterDelay_calledInTheOrderOfInstantsAndThenOfAsking) {
    loop.performAfterDelay(3, note("3"));
    loop.performAfterDelay(1, note("1"));
    loop.performAfterDelay(2, note("2 a"));
    loop.performAfterDelay(2, note("2 b"));
    phone.advance(10);
    EXPECT_EQ(done, (Names{"1", "2 a", "2 b", "3"}));
}

TEST_F(RunLoopTest, advance_showsEachCallItsOwnInstantAndMakesCallsThatCallsAskFor) {
    const double start = phone.clock->now().secondsSinceReference;
    std::vector<double> instants;
    const auto noteInstant = [&] { instants.push_back(phone.clock->now().secondsSinceReference - start); };
    loop.performAfterDelay(1, [&] {
        noteInstant();
        loop.performAfterDelay(0.5, noteInstant);
        loop.performAfterDelay(100, noteInstant);
    });
    loop.performAfterDelay(2, noteInstant);
    phone.advance(5);
    EXPECT_EQ(instants, (std::vector<double>{1, 1.5, 2}));
    EXPECT_EQ(phone.clock->now().secondsSinceReference, start + 5);
}

TEST_F(RunLoopTest, performAfterDelay_zeroNegativeOrNoNumber_runsInTheNextDrainButNotAtOnce) {
    loop.performAfterDelay(0, note("zero"));
    loop.performAfterDelay(-5, note("negative"));
    loop.performAfterDelay(std::numeric_limits<double>::quiet_NaN(), note("no number"));
    EXPECT_TRUE(done.empty());
    loop.drain();
    EXPECT_EQ(done, (Names{"zero", "negative", "no number"}));
}

TEST_F(RunLoopTest, cancel_beforeItsInstant_dropsTheCallAndWhatItOwns) {
    auto owned = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = owned;
    const auto timer = loop.performAfterDelay(1, [owned = std::move(owned)] { FAIL() << *owned; });
    EXPECT_FALSE(watched.expired());
    loop.cancel(timer);
    EXPECT_TRUE(watched.expired());
    loop.cancel(timer);
    phone.advance(2);
}

TEST_F(RunLoopTest, performAfterDelay_keepsItsTargetUntilItHasRun) {
    auto owned = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = owned;
    loop.performAfterDelay(1, [owned = std::move(owned)] {});
    loop.drain();
    EXPECT_FALSE(watched.expired());
    phone.advance(1);
    EXPECT_TRUE(watched.expired());
}

TEST_F(RunLoopTest, performAfterDelay_withoutAClock_waitsInRealTime) {
    phone.clock.reset();
    phone.install();
    bool called = false;
    loop.performAfterDelay(0.02, [&] { called = true; });
    EXPECT_TRUE(loop.runUntil([&] { return called; }, 60s));
}

TEST_F(RunLoopTest, drain_waitsForBackgroundWorkThatPostsToMain) {
    for (int i = 0; i < 50; ++i) {
        GlobalQueue::shared().async([&, i] {
            platform::dispatchMain([&, i] {
                done.push_back(std::to_string(i));
                if (i % 2 == 0) GlobalQueue::shared().async([&] { platform::dispatchMain(note("again")); });
            });
        });
    }
    loop.drain();
    EXPECT_EQ(done.size(), 75U);
}

TEST_F(RunLoopTest, drain_waitsForAnActivityUntilItEnds) {
    loop.beginActivity();
    std::thread worker([&] {
        for (int i = 0; i < 100; ++i) loop.post(note("step"));
        loop.post(note("last"));
        loop.endActivity();
    });
    loop.drain();
    EXPECT_EQ(done.size(), 101U);
    worker.join();
}

TEST_F(RunLoopTest, drain_asksPendingChecksUntilTheyAnswerNo) {
    int asked = 0;
    const auto check = loop.addPendingCheck([&] { return ++asked < 3; });
    loop.drain();
    EXPECT_EQ(asked, 3);
    loop.removePendingCheck(check);
    loop.drain();
    EXPECT_EQ(asked, 3);
}

TEST_F(RunLoopTest, drain_noticesWhatACheckTurnsUpWhileAnActivityEnds) {
    // The activity's last act makes the check answer true: drain() must ask again after the activity has
    // ended.
    for (int round = 0; round < 200; ++round) {
        std::atomic<bool> onItsWay = false;
        bool arrived = false;
        const auto check = loop.addPendingCheck([&] {
            if (!onItsWay.exchange(false)) return false;
            loop.post([&] { arrived = true; });
            return true;
        });
        GlobalQueue::shared().async([&] { onItsWay = true; });
        loop.drain();
        EXPECT_TRUE(arrived);
        loop.removePendingCheck(check);
    }
}

TEST_F(RunLoopTest, drain_doesNotServeDescriptors_runDoes) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    ASSERT_EQ(write(ends[1], "x", 1), 1);
    loop.watch(ends[0], [&] {
        char byte = 0;
        EXPECT_EQ(read(ends[0], &byte, 1), 1);
        loop.post(note("posted by the handler"));
        loop.drain();
        done.emplace_back("drained in the handler");
        loop.stop();
    });
    loop.drain();
    EXPECT_TRUE(done.empty());
    loop.run();
    EXPECT_EQ(done, (Names{"posted by the handler", "drained in the handler"}));
    loop.unwatch(ends[0]);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(RunLoopTest, descriptorServedAlways_isServedWhereverTheLoopWaits) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    int served = 0;
    const auto serve = [&] {
        char byte = 0;
        served += static_cast<int>(read(ends[0], &byte, 1));
    };
    const auto check = loop.addPendingCheck([&] { return served == 0; });
    ASSERT_EQ(write(ends[1], "x", 1), 1);
    loop.watch(ends[0], serve, RunLoop::Serve::Always);
    loop.drain();
    EXPECT_EQ(served, 1);
    loop.removePendingCheck(check);

    ASSERT_EQ(write(ends[1], "x", 1), 1);
    EXPECT_TRUE(loop.runUntil([&] { return served == 2; }, 60s));

    loop.watch(ends[0], serve);
    ASSERT_EQ(write(ends[1], "x", 1), 1);
    EXPECT_FALSE(loop.runUntil([&] { return served == 3; }, 20ms));
    loop.unwatch(ends[0]);
    for (const int end : ends) close(end);
}

TEST_F(RunLoopTest, run_servesHungUpDescriptorsAndNotThoseAnEarlierHandlerUnwatched) {
    std::array<int, 2> a{};
    std::array<int, 2> b{};
    ASSERT_EQ(pipe(a.data()), 0);
    ASSERT_EQ(pipe(b.data()), 0);
    close(a[1]);
    close(b[1]);
    loop.watch(a[0], [&] {
        done.emplace_back("a");
        loop.unwatch(a[0]);
        loop.unwatch(b[0]);
        loop.stop();
    });
    loop.watch(b[0], note("b"));
    loop.run();
    EXPECT_EQ(done, Names{"a"});
    close(a[0]);
    close(b[0]);
}

TEST_F(RunLoopTest, run_isWokenByPostsOfOtherThreads) {
    std::thread other([&] {
        loop.post(note("posted"));
        loop.post([&] { loop.stop(); });
    });
    loop.run();
    EXPECT_EQ(done, Names{"posted"});
    other.join();
}

TEST_F(RunLoopTest, stop_beforeRun_isNotLost) {
    loop.stop();
    loop.run();
    SUCCEED();
}

TEST_F(RunLoopTest, runUntil_tellsWhetherTheConditionCameTrue) {
    EXPECT_TRUE(loop.runUntil([] { return true; }, 0ms));
    EXPECT_FALSE(loop.runUntil([] { return false; }, 20ms));
    loop.post(note("one"));
    loop.post(note("two"));
    EXPECT_TRUE(loop.runUntil([&] { return done.size() == 1; }, 60s));
    EXPECT_EQ(done, Names{"one"});
}

TEST_F(RunLoopTest, runUntil_asksAgainWhenNothingIsPosted) {
    std::atomic<bool> flag = false;
    std::thread other([&] { flag = true; });
    EXPECT_TRUE(loop.runUntil([&] { return flag.load(); }, 60s));
    other.join();
}

TEST_F(RunLoopTest, runUntil_aTaskThatPostsItselfForEver_endsInTime) {
    RunLoop::Task again = [&] { loop.post(again); };
    loop.post(again);
    EXPECT_FALSE(loop.runUntil([] { return false; }, 20ms));
    loop.reset();
}

TEST_F(RunLoopTest, turns_aTaskThatPostsItselfDoesNotHoldUpDueCalls) {
    bool called = false;
    RunLoop::Task again = [&] {
        if (!called) loop.post(again);
    };
    loop.performAfterDelay(0, [&] { called = true; });
    loop.post(again);
    EXPECT_TRUE(loop.runUntil([&] { return called; }, 60s));
}

TEST_F(RunLoopTest, reset_forgetsTasksTimersAndChecks) {
    loop.post(note("task"));
    loop.performAfterDelay(0, note("timer"));
    loop.addPendingCheck([] { return true; });
    loop.beginActivity();
    loop.reset();
    loop.drain();
    EXPECT_TRUE(done.empty());
    EXPECT_FALSE(loop.nextTimer());
}

TEST_F(RunLoopTest, globalQueueOnTheMainLoop_runsItsTasksThereInOrder) {
    GlobalQueue& queue = GlobalQueue::shared();
    queue.setPlace(GlobalQueue::Place::MainLoop);
    bool isOnMainThread = true;
    for (int task = 0; task < 20; ++task) {
        queue.async([&, task] {
            isOnMainThread = isOnMainThread && loop.isCurrent();
            done.push_back(std::to_string(task));
        });
        loop.post(note("posted"));
    }
    EXPECT_TRUE(done.empty());
    loop.drain();
    queue.setPlace(GlobalQueue::Place::Threads);
    EXPECT_TRUE(isOnMainThread);
    Names expected;
    for (int task = 0; task < 20; ++task) {
        expected.push_back(std::to_string(task));
        expected.emplace_back("posted");
    }
    EXPECT_EQ(expected, done);
}

TEST_F(RunLoopTest, cancel_whatTheCallOwnsMayComeBackToTheLoop) {
    struct Poster {
        RunLoop& loop;
        Names& done;
        ~Poster() {
            loop.post([&names = done] { names.emplace_back("posted by a destructor"); });
        }
    };
    const auto timer = loop.performAfterDelay(1, [poster = std::make_shared<Poster>(loop, done)] {});
    loop.cancel(timer);
    loop.drain();
    EXPECT_EQ(done, Names{"posted by a destructor"});
}

TEST_F(RunLoopTest, advance_backwardsOrForEver_isAnErrorAndMovesNothing) {
    const Date before = phone.clock->now();
    EXPECT_FALSE(device::advanceRunning(*phone.clock, -1));
    EXPECT_FALSE(device::advanceRunning(*phone.clock, std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(device::advanceRunning(*phone.clock, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ(phone.clock->now(), before);
}

TEST(RunLoopDeathTest, aTaskThatThrows_endsTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            RunLoop::main().post([] { throw 1; });
            RunLoop::main().drain();
        },
        "");
}

}  // namespace
