// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/foundation/Journal.h"
#include "platform/foundation/LogSink.h"
#include "tests/doubles/Phone.h"

namespace {

using platform::Dictionary;
using platform::Journal;
using Events = std::vector<Dictionary>;

class JournalTest : public testing::Test {
  protected:
    doubles::Phone phone;
    Journal& journal = Journal::shared();
};

TEST_F(JournalTest, take_givesEventsOnceInTheOrderInWhichTheyBegan) {
    const auto slow = journal.begin("write", {{"path", "/a"}});
    journal.record("reload");
    journal.finish(slow, true);
    EXPECT_EQ(journal.take(),
              (Events{{{"event", "write"}, {"path", "/a"}, {"ok", true}}, {{"event", "reload"}}}));
    EXPECT_TRUE(journal.take().empty());
}

TEST_F(JournalTest, finish_ofAnEventThatWasTaken_changesNothing) {
    const auto ticket = journal.begin("write");
    EXPECT_EQ(journal.take(), (Events{{{"event", "write"}}}));
    journal.record("reload");
    journal.finish(ticket, false);
    EXPECT_EQ(journal.take(), (Events{{{"event", "reload"}}}));
}

TEST_F(JournalTest, stopped_dropsEventsAndTheirOutcomes) {
    const auto before = journal.begin("write");
    journal.stop();
    const auto dropped = journal.begin("write");
    journal.start();
    journal.record("reload");
    journal.finish(before, true);
    journal.finish(dropped, true);
    EXPECT_EQ(journal.take(), (Events{{{"event", "reload"}}}));
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
    EXPECT_EQ(journal.take(), (Events{{{"event", "log"}, {"text", "two  lines"}}}));
}

}  // namespace
