// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "settings/channels/server/Places.h"

namespace settings::server {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlacesTest : public testing::Test {
  protected:
    /// A connection called so; when it has to leave, its name is written down.
    Places::Place enter(const std::string& name) {
        return places_.enter([this, name] { left_.push_back(name); });
    }

    std::vector<std::string> left_;
    Places places_{3, 2};
};

}  // namespace

TEST_F(PlacesTest, strangersBeyondTheBound_sendAwayTheOneThatCameFirst) {
    const auto a = enter("a");
    const auto b = enter("b");
    const auto c = enter("c");
    EXPECT_THAT(left_, IsEmpty());
    const auto d = enter("d");
    EXPECT_THAT(left_, ElementsAre("a"));
    const auto e = enter("e");
    EXPECT_THAT(left_, ElementsAre("a", "b"));
}

TEST_F(PlacesTest, placeGivenBack_isFree) {
    const auto a = enter("a");
    auto b = std::make_optional(enter("b"));
    const auto c = enter("c");
    b.reset();
    const auto d = enter("d");
    EXPECT_THAT(left_, IsEmpty());
    // The one that has left before it gives back its place is not counted any more.
    const auto e = enter("e");
    const auto f = enter("f");
    EXPECT_THAT(left_, ElementsAre("a", "c"));
}

TEST_F(PlacesTest, idleOnes_leaveBeforeBusyOnesInTheOrderInWhichTheyFellIdle) {
    auto a = enter("a");
    auto b = enter("b");
    const auto c = enter("c");
    a.set(Activity::Busy);
    b.set(Activity::Busy);
    b.set(Activity::Idle);
    const auto d = enter("d");
    EXPECT_THAT(left_, ElementsAre("c"));
    const auto e = enter("e");
    EXPECT_THAT(left_, ElementsAre("c", "b"));
}

TEST_F(PlacesTest, whereAllAreBusy_theOldestLeaves) {
    auto a = enter("a");
    auto b = enter("b");
    auto c = enter("c");
    for (auto* place : {&c, &a, &b}) place->set(Activity::Busy);
    const auto d = enter("d");
    EXPECT_THAT(left_, ElementsAre("a"));
}

TEST_F(PlacesTest, known_areCountedApart) {
    auto a = enter("a");
    EXPECT_FALSE(a.isKnown());
    EXPECT_TRUE(a.becomeKnown());
    EXPECT_TRUE(a.isKnown());
    EXPECT_TRUE(a.becomeKnown()) << "it is already";
    const auto b = enter("b");
    const auto c = enter("c");
    const auto d = enter("d");
    EXPECT_THAT(left_, IsEmpty());
    const auto e = enter("e");
    EXPECT_THAT(left_, ElementsAre("b"));
}

TEST_F(PlacesTest, knownBeyondTheBound_sendAwayAnIdleKnownOneOrStayStrangers) {
    auto a = enter("a");
    auto b = enter("b");
    ASSERT_TRUE(a.becomeKnown() && b.becomeKnown());
    a.set(Activity::Busy);
    auto c = enter("c");
    EXPECT_TRUE(c.becomeKnown());
    EXPECT_THAT(left_, ElementsAre("b"));
    c.set(Activity::Busy);
    auto d = enter("d");
    EXPECT_FALSE(d.becomeKnown());
    EXPECT_FALSE(d.isKnown());
    EXPECT_THAT(left_, ElementsAre("b"));
}

TEST_F(PlacesTest, whoHasToLeave_doesNotBecomeKnown) {
    auto a = enter("a");
    const auto b = enter("b");
    const auto c = enter("c");
    const auto d = enter("d");
    ASSERT_THAT(left_, ElementsAre("a"));
    EXPECT_FALSE(a.becomeKnown());
    a.set(Activity::Idle);
    a.set(Activity::Busy);
    const auto e = enter("e");
    EXPECT_THAT(left_, ElementsAre("a", "b"));
}

TEST_F(PlacesTest, wayOfLeaving_canChange) {
    auto a = enter("a");
    a.setLeave([this] { left_.push_back("a as a socket"); });
    EXPECT_TRUE(places_.makeRoom());
    EXPECT_THAT(left_, ElementsAre("a as a socket"));
    a.setLeave([this] { left_.push_back("a at once"); });
    EXPECT_THAT(left_, ElementsAre("a as a socket", "a at once"));
}

TEST_F(PlacesTest, room_isMadeByStrangersFirstAndNeverByABusyKnownOne) {
    auto a = enter("a");
    auto b = enter("b");
    ASSERT_TRUE(a.becomeKnown() && b.becomeKnown());
    a.set(Activity::Busy);
    auto c = enter("c");
    c.set(Activity::Busy);
    const auto d = enter("d");
    for (const bool made : {true, true, true, false}) EXPECT_EQ(places_.makeRoom(), made);
    EXPECT_THAT(left_, ElementsAre("d", "c", "b"));
}

}  // namespace settings::server
