// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/channels/JSON.h"
#include "settings/exploring/AnswerChecks.h"

namespace {

using platform::Dictionary;
using platform::Value;
using settings::AnswerChecks;
using settings::AskedCommand;

/// A state with a switch and a slider, as far as it is looked at; the fields go over its own.
Value state(const std::string& rows = R"([{"key":"1","index":0,"name":"On","value":true},
                                          {"key":"2","index":1,"name":"Loud","value":0.5}])",
            const std::string& fields = R"({"revision":1})", const std::string& events = "[]") {
    const Value read = *settings::parseJSON(
        R"({"device":{},"faults":[],"presented":null,"screen":{"id":3,"class":"Screen","stack":["List","Screen"],
            "count":2,"rows":)" +
        rows + R"(},"events":)" + events + "}");
    Dictionary whole = *read.dictionary();
    whole.merge(*settings::parseJSON(fields)->dictionary());
    return whole;
}

Value done(const Value& state) {
    return Dictionary{{"ok", true}, {"state", state}};
}
Value refused(const Value& state, const char* error = "It cannot be done.") {
    return Dictionary{{"ok", false}, {"error", error}, {"state", state}};
}

class AnswerChecksTest : public testing::Test {
  public:
    AnswerChecksTest() { checks_.check(asked({{"do", "state"}}), done(state())); }

    static AskedCommand asked(Dictionary fields) {
        AskedCommand command;
        command.fields = std::move(fields);
        command.isUndisturbed = true;
        return command;
    }
    /// The invariant and subject that this answer breaks; empty for none.
    std::string broken(const AskedCommand& command, const Value& answer) {
        const auto breach = checks_.check(command, answer);
        return breach ? breach->invariant + " " + breach->subject : "";
    }

  private:
    AnswerChecks checks_;
};

TEST_F(AnswerChecksTest, soundAnswers_breakNothing) {
    EXPECT_EQ(broken(asked({{"do", "state"}}), done(state())), "");
    EXPECT_EQ(broken(asked({{"do", "tap"}, {"row", 7}}), refused(state())), "");
    EXPECT_EQ(broken(asked({}), refused(state())), "");
}

TEST_F(AnswerChecksTest, answersWithoutForm_areTold) {
    EXPECT_EQ(broken(asked({{"do", "state"}}), Dictionary{{"state", state()}}), "answer ok");
    EXPECT_EQ(broken(asked({{"do", "state"}}), Dictionary{{"ok", false}, {"state", state()}}),
              "answer error");
    EXPECT_EQ(broken(asked({{"do", "tap"}}), refused(state(), "std::bad_alloc")), "answer sentence");
    EXPECT_EQ(broken(asked({{"do", "tap"}, {"id", 7}}), done(state())), "answer id");
    EXPECT_EQ(broken(asked({}), done(state())), "answer noCommand");
    EXPECT_EQ(broken(asked({{"do", "state"}}), done(state("null"))), "answer rows");
    EXPECT_EQ(broken(asked({{"do", "state"}}), done(state("[]", R"({"revision":0})"))), "answer revision");
    EXPECT_EQ(broken(asked({{"do", "state"}}), done(state("[]", R"({"revision":null})"))), "answer revision");
}

TEST_F(AnswerChecksTest, rowsOfOneKeyOrOutOfOrder_areTold) {
    EXPECT_EQ(
        broken(asked({{"do", "state"}}), done(state(R"([{"key":"1","index":0},{"key":"1","index":1}])"))),
        "answer key");
    EXPECT_EQ(
        broken(asked({{"do", "state"}}), done(state(R"([{"key":"1","index":0},{"key":"2","index":2}])"))),
        "answer index");
}

TEST_F(AnswerChecksTest, presses_areRefusedWhenWhatTheyNameIsNotThereAndOnlyThen) {
    AskedCommand misaimed = asked({{"do", "tap"}, {"key", "z"}});
    misaimed.isMisaimed = true;
    EXPECT_EQ(broken(misaimed, done(state())), "answer misaimed");
    AskedCommand aimed = asked({{"do", "tap"}, {"key", "1"}});
    aimed.isAimed = true;
    Dictionary stale = *refused(state()).dictionary();
    stale["stale"] = true;
    EXPECT_EQ(broken(aimed, stale), "answer stale");
    aimed.isUndisturbed = false;
    EXPECT_EQ(broken(aimed, stale), "");
}

TEST_F(AnswerChecksTest, events_comeOnceAndBehindTheirCauses) {
    const auto withEvents = [](const char* events) { return done(state("[]", R"({"revision":2})", events)); };
    AskedCommand command = asked({{"do", "open"}});
    EXPECT_EQ(broken(command, withEvents(R"([{"id":4,"event":"log","cause":null}])")), "");
    EXPECT_EQ(broken(command, withEvents(R"([{"id":4,"event":"log","cause":null}])")), "answer eventOrder");
    EXPECT_EQ(broken(command, withEvents(R"([{"id":6,"event":"log","cause":9}])")), "answer eventCause");
}

TEST_F(AnswerChecksTest, refusals_changeNothing) {
    const Value other = state(R"([{"key":"1","index":0,"name":"On","value":false},
                                  {"key":"2","index":1,"name":"Loud","value":0.5}])");
    AskedCommand command = asked({{"do", "tap"}, {"row", 0}});
    EXPECT_EQ(broken(command, refused(other)), "refusedChanged screen.rows[].value");
    EXPECT_EQ(broken(command, refused(state("[]", R"({"revision":2})", R"([{"id":1,"event":"write"}])"))),
              "refusedChanged event write");
}

TEST_F(AnswerChecksTest, refusalsAfterSomethingElse_mayShowIt) {
    const Value other = state(R"([{"key":"1","index":0,"name":"Off","value":false}])");
    AskedCommand command = asked({{"do", "tap"}, {"row", 0}});
    command.isUndisturbed = false;
    EXPECT_EQ(broken(command, refused(other)), "");
}

TEST_F(AnswerChecksTest, looksWithoutEvents_seeTheSame) {
    const Value other = state(R"([{"key":"1","index":0,"name":"On","value":false},
                                  {"key":"2","index":1,"name":"Loud","value":0.5}])");
    EXPECT_EQ(broken(asked({{"do", "state"}}), done(other)), "looksDifferent screen.rows[].value");
    // A part of the list.
    const Value part = state(R"([{"key":"2","index":1,"name":"Loud","value":0.75}])");
    EXPECT_EQ(broken(asked({{"do", "state"}, {"from", 1}}), done(part)), "looksDifferent row.value");
}

TEST_F(AnswerChecksTest, whatWasSet_isShownUnlessSomethingTellsOtherwise) {
    const auto set = [](const char* key, const Value& value) {
        return asked({{"do", "set"}, {"key", key}, {"value", value}});
    };
    EXPECT_EQ(broken(set("1", false), done(state())), "notShown Screen On");
    EXPECT_EQ(broken(set("1", true), done(state())), "");
    EXPECT_EQ(broken(set("2", 0.5000000001), done(state())), "");
    EXPECT_EQ(broken(set("2", 0.6), done(state())), "notShown Screen Loud");
    const Value reloaded = state(R"([{"key":"1","index":0,"name":"On","value":true}])", R"({"revision":2})",
                                 R"([{"id":5,"event":"reload","cause":null}])");
    EXPECT_EQ(broken(set("1", false), done(reloaded)), "");
}

}  // namespace
