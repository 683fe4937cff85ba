// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <chrono>

#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/RunLoop.h"
#include "settings/channels/Session.h"
#include "tests/doubles/Required.h"
#include "tests/settings/TestList.h"

namespace {

using doubles::required;
using fixtures::Desk;
using fixtures::plainRow;
using platform::PSCellType;
using platform::RunLoop;
using platform::Value;
using settings::Session;

std::uint64_t revisionOf(const Value& answer) {
    return answer["state"]["revision"].unsignedInteger().value_or(0);
}

std::size_t eventCount(const Value& answer) {
    return required(answer["state"]["events"].array())->size();
}

TEST(Session, firstAnswer_holdsTheEventsSinceTheStart) {
    Desk desk;
    const Value first = desk.answer(R"({"do":"state"})");
    const platform::Array& events = *required(first["state"]["events"].array());
    ASSERT_GE(events.size(), 2U);
    EXPECT_EQ(events.back()["event"], Value("push"));
    EXPECT_EQ(events.back()["class"], Value("TestList"));
    EXPECT_EQ(eventCount(desk.answer(R"({"do":"state"})")), 0U);
}

TEST(Session, eachSession_hasItsOwnPlaceInTheEvents) {
    Desk desk;
    Session other(desk.application);
    desk.answer(R"({"do":"state"})");
    Desk::answer(other, R"({"do":"state"})");
    desk.answer(R"({"do":"post","name":"a"})");
    desk.answer(R"({"do":"post","name":"b"})");
    EXPECT_EQ(eventCount(Desk::answer(other, R"({"do":"state"})")), 4U);
    EXPECT_EQ(eventCount(Desk::answer(other, R"({"do":"state"})")), 0U);
}

TEST(Session, forgottenEvents_areCountedAndTheNewestStay) {
    Desk desk;
    desk.answer(R"({"do":"state"})");
    for (int i = 0; i < 10'007; ++i) platform::Journal::shared().record("log", {{"text", i}});
    const Value answer = desk.answer(R"({"do":"state"})");
    EXPECT_EQ(eventCount(answer), 10'000U);
    EXPECT_EQ(answer["state"]["droppedEvents"], Value(7));
    EXPECT_EQ(required(answer["state"]["events"].array())->at(9'999)["text"], Value(10'006));
    EXPECT_TRUE(desk.answer(R"({"do":"state"})")["state"]["droppedEvents"].isNil());
}

TEST(Session, revision_growsWithChangesOnly) {
    Desk desk;
    const auto first = revisionOf(desk.answer(R"({"do":"state"})"));
    EXPECT_EQ(revisionOf(desk.answer(R"({"do":"state"})")), first);
    EXPECT_EQ(revisionOf(desk.answer(R"({"do":"tap","row":4})")), first);
    EXPECT_EQ(revisionOf(desk.answer("nonsense")), first);
    const auto dark = revisionOf(desk.answer(R"({"do":"dark","on":true})"));
    EXPECT_GT(dark, first);
    // A change that no event tells of is seen all the same.
    desk.list->setTitle("Changed");
    EXPECT_GT(revisionOf(desk.answer(R"({"do":"state"})")), dark);
}

TEST(Session, revision_staysWhenOtherRowsOfTheSameScreenAreAskedFor) {
    Desk desk;
    desk.list->setRows({plainRow("A", PSCellType::StaticText), plainRow("B", PSCellType::StaticText)});
    const auto whole = revisionOf(desk.answer(R"({"do":"state"})"));
    EXPECT_EQ(revisionOf(desk.answer(R"({"do":"state","from":1,"count":1})")), whole);
}

TEST(Session, push_comesOnceForAChangeAndKeepsTheWindow) {
    Desk desk;
    desk.list->setRows({plainRow("A", PSCellType::StaticText), plainRow("B", PSCellType::StaticText)});
    EXPECT_FALSE(desk.session.push().has_value()) << "nothing was asked yet";
    desk.answer(R"({"do":"state","from":1,"count":1})");
    EXPECT_FALSE(desk.session.push().has_value());
    desk.list->setTitle("Changed");
    const auto pushed = desk.session.push();
    ASSERT_TRUE(pushed.has_value());
    const Value state = settings::parseJSON(*pushed).value();
    EXPECT_TRUE(state["ok"].isNil());
    EXPECT_EQ(state["state"]["screen"]["title"], Value("Changed"));
    ASSERT_EQ(Desk::rows(state).size(), 1U);
    EXPECT_EQ(Desk::rows(state)[0]["name"], Value("B"));
    EXPECT_FALSE(desk.session.push().has_value());
}

TEST(Session, window_makesCellsOfItsRowsOnly) {
    Desk desk;
    platform::SpecifierList rows;
    for (int i = 0; i < 100'000; ++i) {
        rows.push_back(plainRow("Row", PSCellType::StaticText));
        rows.back()->setProperty_forKey("CountedCell", "cellClass");
    }
    desk.list->setRows(std::move(rows));
    fixtures::CountedCell::made = 0;
    const Value answer = desk.answer(R"({"do":"state","from":50000,"count":3})");
    EXPECT_EQ(answer["state"]["screen"]["count"], Value(100'000));
    ASSERT_EQ(Desk::rows(answer).size(), 3U);
    EXPECT_EQ(Desk::rows(answer)[0]["index"], Value(50'000));
    EXPECT_EQ(fixtures::CountedCell::made, 3);
    desk.answer(R"({"do":"state","from":50000,"count":3})");
    EXPECT_EQ(fixtures::CountedCell::made, 3);
    desk.answer(R"({"do":"dark","on":true,"from":50000,"count":3})");
    EXPECT_EQ(fixtures::CountedCell::made, 6) << "cells take their colours when they are made";
}

TEST(Session, eventsFalse_holdsUntilAnotherCommandSaysTrue) {
    Desk desk;
    Session other(desk.application);
    EXPECT_EQ(eventCount(desk.answer(R"({"do":"post","name":"a","events":false})")), 0U);
    EXPECT_EQ(eventCount(desk.answer(R"({"do":"post","name":"b"})")), 0U);
    EXPECT_GE(eventCount(Desk::answer(other, R"({"do":"state"})")), 4U) << "another connection is told";
    EXPECT_EQ(eventCount(desk.answer(R"({"do":"tap","row":99,"events":"no"})")), 0U);
    EXPECT_EQ(eventCount(desk.answer(R"({"do":"post","name":"c","events":true})")), 2U)
        << "what came while it was told nothing is not made up for";
    EXPECT_EQ(eventCount(desk.answer(R"({"do":"post","name":"d"})")), 2U);
}

TEST(Session, eventsFalse_leavesNothingToPushButChangesOfTheScreen) {
    Desk desk;
    desk.answer(R"({"do":"state","events":false})");
    platform::DarwinNotificationCenter::shared().post("a");
    desk.phone.drain();
    EXPECT_FALSE(desk.session.push().has_value());
    desk.list->setTitle("Changed");
    EXPECT_TRUE(desk.session.push().has_value());
    EXPECT_EQ(desk.answer(R"({"do":"wait","event":"darwin","name":"a","seconds":0})")["ok"], Value(true));
}

TEST(Session, eventsOfAWrongType_isAnErrorThatLeavesTheSettingAsItWas) {
    Desk desk;
    desk.answer(R"({"do":"state"})");
    for (const char* line : {R"({"do":"post","name":"a","events":"some"})", R"({"do":"state","events":null})",
                             R"({"do":"state","events":0})"}) {
        const Value answer = desk.answer(line);
        EXPECT_EQ(answer["ok"], Value(false)) << line;
        EXPECT_TRUE(answer["stale"].isNil());
        EXPECT_EQ(eventCount(answer), 0U);
    }
    EXPECT_EQ(eventCount(desk.answer(R"({"do":"post","name":"a"})")), 2U);
}

std::vector<std::string> kindsOf(const Value& answer) {
    std::vector<std::string> kinds;
    for (const Value& event : *answer["state"]["events"].array()) kinds.push_back(event["event"].stringOr());
    return kinds;
}

/// Nil out of range.
Value eventAt(const Value& answer, std::size_t index) {
    const platform::Array& events = *answer["state"]["events"].array();
    return index < events.size() ? events[index] : Value();
}

/// A screen whose row sends this action.
struct Presser : platform::PSListController {
    PLATFORM_CLASS(Presser, platform::PSListController)

  public:
    void press(const std::shared_ptr<platform::PSSpecifier>&) { platform::log("pressed"); }
};

PLATFORM_REGISTER_CLASS(Presser)

TEST(Session, calls_areToldWithEventsAllOnly) {
    Desk desk;
    const auto screen = std::make_shared<Presser>();
    const auto row = plainRow("Press", PSCellType::Button);
    row->setTarget(screen);
    row->setButtonAction(platform::method("press:", &Presser::press));
    desk.list->setRows({row});
    Session other(desk.application);
    desk.answer(R"({"do":"state","events":"all"})");
    Desk::answer(other, R"({"do":"state"})");

    const Value answer = desk.answer(R"({"do":"tap","row":0})");
    ASSERT_EQ(kindsOf(answer), (std::vector<std::string>{"call", "log"}));
    EXPECT_EQ(eventAt(answer, 0)["class"], Value("Presser"));
    EXPECT_EQ(eventAt(answer, 0)["selector"], Value("press:"));
    EXPECT_EQ(eventAt(answer, 0)["row"], Desk::rows(answer)[0]["key"]);
    EXPECT_EQ(eventAt(answer, 0)["cause"], Value(platform::Dictionary{{"command", 2}}));
    EXPECT_TRUE(eventAt(answer, 0)["ms"].number());
    EXPECT_EQ(eventAt(answer, 1)["cause"], eventAt(answer, 0)["id"]);

    const Value told = Desk::answer(other, R"({"do":"state"})");
    ASSERT_EQ(kindsOf(told), std::vector<std::string>{"log"}) << "no call, and nothing that comes of one";
    const Value cause = eventAt(told, 0)["cause"];
    EXPECT_EQ(cause["command"], Value(2));
    EXPECT_TRUE(cause["connection"].integer()) << "it was another connection's command";

    EXPECT_EQ(kindsOf(desk.answer(R"({"do":"tap","row":0,"events":true})")), std::vector<std::string>{"log"});
}

TEST(Session, cause_isTheCommandWithItsIdAndWhatBeganByItselfHasNone) {
    Desk desk;
    const Value start = eventAt(desk.answer("no command"), 0);
    EXPECT_TRUE(start["id"].integer());
    EXPECT_TRUE(start["cause"].isNil()) << "nobody asked for it";
    const Value answer = desk.answer(R"({"do":"post","name":"a","id":"mine"})");
    const Value posted = eventAt(answer, 0);
    EXPECT_EQ(posted["event"], Value("darwin"));
    EXPECT_EQ(posted["cause"], Value(platform::Dictionary{{"command", 2}, {"id", "mine"}}));
    EXPECT_EQ(eventAt(answer, 1)["event"], Value("darwinReceived"));
    EXPECT_EQ(eventAt(answer, 1)["cause"], posted["id"]) << "the way out and back";
    EXPECT_LE(posted["at"].number(), eventAt(answer, 1)["at"].number());
}

TEST(Session, forgottenCalls_areNotCountedForThoseWhoAreToldOfNone) {
    Desk desk;
    const auto screen = std::make_shared<Presser>();
    const auto row = plainRow("Press", PSCellType::Button);
    row->setTarget(screen);
    row->setButtonAction(platform::method("press:", &Presser::press));
    Session all(desk.application);
    desk.answer(R"({"do":"state"})");
    Desk::answer(all, R"({"do":"state","events":"all"})");
    for (std::size_t i = 0; i < settings::EventLog::backlog; ++i) row->performButtonAction();
    // Of two events for each press half were forgotten.
    EXPECT_EQ(desk.answer(R"({"do":"state"})")["state"]["droppedEvents"],
              Value(settings::EventLog::backlog / 2));
    EXPECT_EQ(Desk::answer(all, R"({"do":"state"})")["state"]["droppedEvents"],
              Value(settings::EventLog::backlog));
}

TEST(Session, windowElsewhere_isThatOfAnotherScreenOnly) {
    Desk desk;
    platform::SpecifierList rows;
    for (int i = 0; i < 10; ++i) rows.push_back(plainRow("Row", PSCellType::StaticText));
    desk.list->setRows(std::move(rows));
    const auto indexes = [&](const std::string& line) {
        std::vector<std::int64_t> found;
        const Value answer = desk.answer(line);
        for (const Value& row : Desk::rows(answer)) found.push_back(row["index"].integer().value_or(-1));
        return found;
    };
    using Indexes = std::vector<std::int64_t>;
    EXPECT_EQ(indexes(R"({"do":"state","from":8,"count":1,"elsewhere":{"from":0,"count":1}})"), Indexes{8});
    EXPECT_EQ(indexes(R"({"do":"back","from":8,"count":1,"elsewhere":{"from":1,"count":2}})"), (Indexes{1}));
    EXPECT_EQ(desk.answer(R"({"do":"state","elsewhere":3})")["ok"], Value(false));
    EXPECT_EQ(desk.answer(R"({"do":"state","elsewhere":{"from":-1}})")["ok"], Value(false));
}

TEST(Session, search_makesNoCell) {
    Desk desk;
    platform::SpecifierList rows;
    for (int i = 0; i < 10'000; ++i) {
        rows.push_back(plainRow("Row " + std::to_string(i), PSCellType::StaticText));
        rows.back()->setProperty_forKey("CountedCell", "cellClass");
    }
    desk.list->setRows(std::move(rows));
    fixtures::CountedCell::made = 0;
    const Value answer = desk.answer(R"({"do":"find","text":"rOw 999"})");
    const platform::Array& found = *required(answer["found"].array());
    ASSERT_EQ(found.size(), 11U);
    EXPECT_EQ(found[0]["index"], Value(999));
    EXPECT_EQ(found[10]["name"], Value("Row 9999"));
    EXPECT_EQ(fixtures::CountedCell::made, 0);
    EXPECT_FALSE(desk.session.push().has_value());
    const Value row = desk.answer(R"({"do":"state","from":9999,"count":1})");
    EXPECT_EQ(Desk::rows(row)[0]["key"], found[10]["key"]);
    EXPECT_EQ(revisionOf(row), revisionOf(answer));
}

TEST(Session, passingTime_isNoChange) {
    Desk desk;
    const Value first = desk.answer(R"({"do":"state"})");
    EXPECT_EQ(first["state"]["device"]["clockRuns"], Value(true));
    desk.phone.clock->moveTo(platform::Date{desk.phone.clock->now().secondsSinceReference + 60});
    EXPECT_FALSE(desk.session.push().has_value());
    const Value second = desk.answer(R"({"do":"state"})");
    EXPECT_EQ(revisionOf(second), revisionOf(first));
    EXPECT_NE(second["state"]["device"]["clock"], first["state"]["device"]["clock"]);
}

TEST(Session, wait_isOverWhenTheEventComes) {
    Desk desk;
    desk.answer(R"({"do":"state"})");
    RunLoop::main().post(
        [] { RunLoop::main().post([] { platform::DarwinNotificationCenter::shared().post("late"); }); });
    const Value answer = desk.answer(R"({"do":"wait","event":"darwinReceived","name":"late","seconds":30})");
    EXPECT_EQ(answer["ok"], Value(true));
    EXPECT_EQ(desk.answer(R"({"do":"wait","event":"darwinReceived","name":"late","seconds":0})")["ok"],
              Value(false))
        << "it came before the last answer";
}

TEST(Session, wait_seesWhatAPushHasAlreadyShown) {
    Desk desk;
    desk.answer(R"({"do":"state"})");
    platform::DarwinNotificationCenter::shared().post("pushed");
    desk.phone.drain();
    ASSERT_TRUE(desk.session.push().has_value());
    EXPECT_EQ(desk.answer(R"({"do":"wait","event":"darwin","name":"pushed","seconds":0})")["ok"],
              Value(true));
}

TEST(Session, wait_endsWhenItsLongestTimeIsOver) {
    Desk desk;
    Session brief(desk.application, std::chrono::milliseconds(20));
    EXPECT_EQ(Desk::answer(brief, R"({"do":"wait","event":"never","seconds":1000000})")["ok"], Value(false));
}

TEST(Session, wait_endsInVainWhenTheLoopIsStopped) {
    Desk desk;
    RunLoop::main().post([] { RunLoop::main().post([] { RunLoop::main().stop(); }); });
    EXPECT_EQ(desk.answer(R"({"do":"wait","event":"never","seconds":1000000})")["ok"], Value(false));
}

TEST(Session, begunWait_hasItsAnswerOnceTheEventHasCome) {
    Desk desk;
    desk.answer(R"({"do":"state"})");
    EXPECT_FALSE(desk.session.waitsUntil().has_value());
    EXPECT_FALSE(desk.session.begin(R"({"do":"wait","event":"darwin","name":"late","seconds":1000,"id":7})"));
    EXPECT_TRUE(desk.session.isWaiting());
    EXPECT_TRUE(desk.session.waitsUntil().has_value());
    EXPECT_FALSE(desk.session.resume());
    platform::DarwinNotificationCenter::shared().post("other");
    EXPECT_FALSE(desk.session.resume());
    platform::DarwinNotificationCenter::shared().post("late");
    const auto text = desk.session.resume();
    ASSERT_TRUE(text);
    const Value answer = settings::parseJSON(*text).value();
    EXPECT_EQ(answer["ok"], Value(true));
    EXPECT_EQ(answer["id"], Value(7));
    EXPECT_EQ(required(answer["state"]["events"].array())->at(0)["name"], Value("other"));
    EXPECT_FALSE(desk.session.isWaiting());
}

TEST(Session, begunWait_whoseEventHasComeAlready_isAnsweredAtOnce) {
    Desk desk;
    desk.answer(R"({"do":"state"})");
    platform::DarwinNotificationCenter::shared().post("early");
    desk.phone.drain();
    EXPECT_TRUE(desk.session.begin(R"({"do":"wait","event":"darwin","name":"early","seconds":1000})"));
    EXPECT_FALSE(desk.session.isWaiting());
}

TEST(Session, begunWait_goesOnThroughPushes) {
    Desk desk;
    desk.answer(R"({"do":"state"})");
    EXPECT_FALSE(desk.session.begin(R"({"do":"wait","event":"darwin","name":"late","seconds":1000})"));
    desk.list->setTitle("Changed");
    EXPECT_TRUE(desk.session.push());
    platform::DarwinNotificationCenter::shared().post("late");
    desk.phone.drain();
    EXPECT_TRUE(desk.session.push()) << "the push shows the event, which is waited for all the same";
    EXPECT_TRUE(desk.session.resume());
}

TEST(Session, begunWait_endsInVainAfterItsTime) {
    Desk desk;
    auto text = desk.session.begin(R"({"do":"wait","event":"never","seconds":0.02})");
    while (!text) text = desk.session.resume();
    EXPECT_EQ(settings::parseJSON(*text).value()["ok"], Value(false));
}

TEST(Session, waitThatIsNone_isAnsweredAtOnce) {
    Desk desk;
    for (const char* line : {R"({"do":"wait"})", R"({"do":"wait","event":"x","seconds":-1})",
                             R"({"do":"wait","event":"x","name":7,"seconds":1})"}) {
        EXPECT_TRUE(desk.session.begin(line)) << line;
        EXPECT_FALSE(desk.session.isWaiting());
    }
}

TEST(Session, answer_comesAfterEverythingThatTheCommandCaused) {
    Desk desk;
    platform::CFNotificationCenterAddObserver(
        platform::CFNotificationCenterGetDarwinNotifyCenter(), desk.list.get(),
        [](platform::DarwinNotificationCenter&, void* observer, const std::string&, const void*,
           const Value&) {
            platform::GlobalQueue::shared().async([observer] {
                platform::dispatchMain(
                    [observer] { static_cast<fixtures::TestList*>(observer)->setTitle("Done"); });
            });
        },
        "begin", nullptr, platform::CFNotificationSuspensionBehavior::DeliverImmediately);
    EXPECT_EQ(desk.answer(R"({"do":"post","name":"begin"})")["state"]["screen"]["title"], Value("Done"));
}

}  // namespace
