// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/foundation/Journal.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/RunLoop.h"
#include "tests/doubles/Phone.h"

namespace {

using platform::Dictionary;
using platform::Journal;
using platform::Value;
using Events = std::vector<Dictionary>;

class JournalTest : public testing::Test {
  protected:
    doubles::Phone phone;
    Journal& journal = Journal::shared();
};

/// A call that is noted by hand.
struct NotedCall : Journal::Call {
    explicit NotedCall(bool noted = true) : noted_(noted) {}
    using Call::note;

  private:
    bool isNoted() const override { return noted_; }
    Dictionary fields() const override { return {{"selector", "press:"}}; }

    bool noted_;
};

/// What each event came of, beside its kind and, for those that are told of no calls, past the calls.
struct Story {
    std::string event;
    Value cause;
    Value pastCalls;
    bool operator==(const Story&) const = default;
};

std::vector<Story> stories(const std::vector<platform::JournalEntry>& entries) {
    std::vector<Story> stories;
    for (const auto& entry : entries)
        stories.push_back({entry.event.at("event").stringOr(), entry.cause.nearest, entry.cause.pastCalls});
    return stories;
}

/// The number of the entry; 0 out of range.
Journal::Id idOf(const std::vector<platform::JournalEntry>& entries, std::size_t index) {
    return index < entries.size() ? entries[index].id : 0;
}

TEST_F(JournalTest, take_givesEventsOnceInTheOrderInWhichTheyBegan) {
    {
        Journal::Course slow("write", {{"path", "/a"}});
        journal.record("reload");
        slow.setOk(true);
    }
    EXPECT_EQ(phone.takeEvents(),
              (Events{{{"event", "write"}, {"path", "/a"}, {"ok", true}}, {{"event", "reload"}}}));
    EXPECT_TRUE(journal.take().empty());
}

TEST_F(JournalTest, course_thatEndsAfterItWasTaken_changesNothing) {
    {
        Journal::Course course("write");
        EXPECT_EQ(phone.takeEvents(), (Events{{{"event", "write"}}}));
        journal.record("reload");
        course.setOk(false);
    }
    EXPECT_EQ(phone.takeEvents(), (Events{{{"event", "reload"}}}));
}

TEST_F(JournalTest, stopped_dropsEventsAndTheirOutcomes) {
    {
        Journal::Course before("write");
        before.setOk(true);
        journal.stop();
        Journal::Course dropped("write");
        dropped.setOk(true);
        journal.start();
        journal.record("reload");
    }
    EXPECT_EQ(phone.takeEvents(), (Events{{{"event", "reload"}}}));
}

TEST_F(JournalTest, events_haveGrowingNumbersAndTheTimeOfTheirBeginning) {
    double time = 5;
    journal.setClock([&time] { return time; });
    {
        const Journal::Course course("write");
        time = 7;
        journal.record("reload");
        time = 9.5;
    }
    journal.setClock({});
    const auto entries = journal.take();
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[1].id, entries[0].id + 1);
    EXPECT_EQ(entries[0].at, 5);
    EXPECT_EQ(entries[0].milliseconds, 4.5);
    EXPECT_EQ(entries[1].at, 7);
    EXPECT_FALSE(entries[1].milliseconds);
}

TEST_F(JournalTest, whatHappensInACourse_comesOfItsEvent) {
    journal.record("log");
    {
        const Journal::Course outer("local");
        const Journal::Course inner("store");
        journal.record("write");
    }
    journal.record("log");
    const auto entries = journal.take();
    const Value local(idOf(entries, 1));
    const Value store(idOf(entries, 2));
    EXPECT_EQ(stories(entries), (std::vector<Story>{{"log", {}, {}},
                                                    {"local", {}, {}},
                                                    {"store", local, local},
                                                    {"write", store, store},
                                                    {"log", {}, {}}}));
}

TEST_F(JournalTest, causing_standsForEverythingAroundIt) {
    const Value command(Dictionary{{"command", 3}});
    {
        const Journal::Course course("local");
        const Journal::Causing causing(command);
        journal.record("reload");
    }
    EXPECT_EQ(stories(journal.take()), (std::vector<Story>{{"local", {}, {}}, {"reload", command, command}}));
}

TEST_F(JournalTest, tasks_comeOfWhatGaveThemToTheLoopOrToAQueue) {
    const auto note = [this] { journal.record("log"); };
    {
        const Journal::Course course("local");
        platform::RunLoop::main().post(note);
        platform::RunLoop::main().performAfterDelay(2, note);
        platform::GlobalQueue::shared().async([note] { platform::RunLoop::main().post(note); });
    }
    phone.drain();
    phone.advance(2);
    platform::RunLoop::main().post(note);
    phone.drain();
    const auto entries = journal.take();
    const Value local(idOf(entries, 0));
    EXPECT_EQ(stories(entries), (std::vector<Story>{{"local", {}, {}},
                                                    {"log", local, local},
                                                    {"log", local, local},
                                                    {"log", local, local},
                                                    {"log", {}, {}}}));
}

TEST_F(JournalTest, call_isToldApart) {
    {
        const Journal::Course course("local");
        NotedCall call;
        call.note();
        journal.record("write");
    }
    const auto entries = journal.take();
    const Value local(idOf(entries, 0));
    EXPECT_EQ(stories(entries),
              (std::vector<Story>{
                  {"local", {}, {}}, {"call", local, local}, {"write", Value(idOf(entries, 1)), local}}));
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_TRUE(entries[1].isCall);
    EXPECT_TRUE(entries[1].milliseconds);
    EXPECT_FALSE(entries[2].isCall);
}

TEST_F(JournalTest, call_isNotedWithTheFirstThingThatComesOfIt) {
    {
        const NotedCall silent;
    }
    EXPECT_TRUE(journal.take().empty());
    {
        const NotedCall outer;
        {
            const NotedCall inner;
            journal.record("log");
        }
        journal.record("log");
    }
    const auto entries = journal.take();
    const Value outer(idOf(entries, 0));
    const Value inner(idOf(entries, 1));
    EXPECT_EQ(
        stories(entries),
        (std::vector<Story>{{"call", {}, {}}, {"call", outer, {}}, {"log", inner, {}}, {"log", outer, {}}}));
}

TEST_F(JournalTest, callThatIsNone_isAsIfItWereNotThere) {
    {
        const Journal::Course course("local");
        NotedCall call(false);
        call.note();
        journal.record("log");
    }
    const auto entries = journal.take();
    const Value local(idOf(entries, 0));
    EXPECT_EQ(stories(entries), (std::vector<Story>{{"local", {}, {}}, {"log", local, local}}));
}

TEST_F(JournalTest, count_growsWithEachEventWhoeverTakesThem) {
    const auto before = journal.count();
    journal.record("reload");
    journal.record("reload");
    EXPECT_EQ(journal.count(), before + 2);
    journal.take();
    EXPECT_EQ(journal.count(), before + 2);
}

TEST_F(JournalTest, log_writesOneLineToTheSinkAndToTheJournal) {
    platform::log("two\r\nlines");
    EXPECT_EQ(phone.log->lines(), std::vector<std::string>{"two  lines"});
    EXPECT_EQ(phone.takeEvents(), (Events{{{"event", "log"}, {"text", "two  lines"}}}));
}

}  // namespace
