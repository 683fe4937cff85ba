// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "settings/channels/IdleEnd.h"

namespace settings {
namespace {

using std::chrono::minutes;

const IdleEnd::Time start{minutes(1000)};

TEST(IdleEnd, NobodyEverCame_isDueAfterItsPatience) {
    IdleEnd idle(minutes(10));
    idle.see(0, start);
    // Being asked again does not begin it anew.
    idle.see(0, start + minutes(9));
    EXPECT_EQ(idle.deadline(), start + minutes(10));
    EXPECT_FALSE(idle.isDue(start + minutes(10) - std::chrono::nanoseconds(1)));
    EXPECT_TRUE(idle.isDue(start + minutes(10)));
}

TEST(IdleEnd, PageIsOpen_isNeverDue) {
    IdleEnd idle(minutes(10));
    idle.see(0, start);
    idle.see(1, start + minutes(9));
    EXPECT_FALSE(idle.deadline());
    EXPECT_FALSE(idle.isDue(start + minutes(1000)));
}

TEST(IdleEnd, LastPageWasClosed_countsFromThere) {
    IdleEnd idle(minutes(10));
    idle.see(2, start);
    idle.see(1, start + minutes(5));
    idle.see(0, start + minutes(20));
    EXPECT_EQ(idle.deadline(), start + minutes(30));
}

TEST(IdleEnd, PageIsAboutToCome_waitsTheWholeTimeAnew) {
    IdleEnd idle(minutes(10));
    idle.beginAnew(start);
    EXPECT_FALSE(idle.deadline());
    idle.see(0, start);
    idle.beginAnew(start + minutes(10));
    EXPECT_EQ(idle.deadline(), start + minutes(20));
}

TEST(IdleEnd, ServerThatStays_isNeverDue) {
    IdleEnd idle;
    idle.see(0, start);
    EXPECT_FALSE(idle.isDue(start + minutes(1'000'000)));
}

}  // namespace
}  // namespace settings
