// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "settings/channels/JSON.h"
#include "settings/recording/AnswerDifference.h"

namespace {

using settings::AnswerDifference;

std::optional<AnswerDifference> between(std::string_view was, std::string_view is) {
    return settings::firstDifference(settings::parseJSON(was).value(), settings::parseJSON(is).value());
}

TEST(AnswerDifference, equalAnswers_haveNone) {
    EXPECT_FALSE(between(R"({"a":[1,{"b":null}],"c":"x"})", R"({"c":"x","a":[1.0,{"b":null}]})"));
}

TEST(AnswerDifference, changedValue_isToldWithItsPath) {
    const auto found = between(R"({"state":{"screen":{"rows":[{"value":1},{"value":true}]}}})",
                               R"({"state":{"screen":{"rows":[{"value":1},{"value":false}]}}})");
    EXPECT_EQ(found, (AnswerDifference{"state.screen.rows[1].value", "true", "false"}));
}

TEST(AnswerDifference, valueOfAnotherType_isAnother) {
    EXPECT_EQ(between(R"({"a":1})", R"({"a":true})"), (AnswerDifference{"a", "1", "true"}));
    EXPECT_EQ(between(R"({"a":[]})", R"({"a":{}})"), (AnswerDifference{"a", "[]", "{}"}));
    EXPECT_EQ(between(R"({"a":"1"})", R"({"a":1})"), (AnswerDifference{"a", "\"1\"", "1"}));
}

TEST(AnswerDifference, whatIsOnOneSideOnly_isNothingOnTheOther) {
    EXPECT_EQ(between(R"({"a":[1]})", R"({"a":[1,2]})"), (AnswerDifference{"a[1]", "nothing", "2"}));
    EXPECT_EQ(between(R"({"a":[1,2]})", R"({"a":[1]})"), (AnswerDifference{"a[1]", "2", "nothing"}));
    EXPECT_EQ(between(R"({"a":{"b":null}})", R"({"a":{}})"), (AnswerDifference{"a.b", "null", "nothing"}));
    EXPECT_EQ(between(R"({"a":{}})", R"({"a":{"b":null}})"), (AnswerDifference{"a.b", "nothing", "null"}));
}

TEST(AnswerDifference, whatIsSeen_comesBeforeTheEventsAndTheRevision) {
    const auto found = between(R"({"state":{"events":[1],"revision":1,"screen":{"title":"A"}}})",
                               R"({"state":{"events":[2],"revision":2,"screen":{"title":"B"}}})");
    EXPECT_EQ(found, (AnswerDifference{"state.screen.title", "\"A\"", "\"B\""}));
    EXPECT_EQ(between(R"({"events":[1],"screen":1})", R"({"events":[2],"screen":1})"),
              (AnswerDifference{"events[0]", "1", "2"}));
}

TEST(AnswerDifference, longValue_isCutBetweenTwoCharacters) {
    std::string text = "\"";
    for (int i = 0; i < 200; ++i) text += "é";
    const auto found = between("{\"a\":" + text + "\"}", R"({"a":1})");
    ASSERT_TRUE(found);
    std::string expected = "\"";
    for (int i = 0; i < 99; ++i) expected += "é";
    EXPECT_EQ(found->was, expected + "…");
}

}  // namespace
