// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/Journal.h"
#include "settings/channels/Clients.h"
#include "tests/doubles/Required.h"
#include "tests/settings/TestList.h"

namespace {

using doubles::required;
using fixtures::Desk;
using platform::Value;
using settings::Clients;
using settings::server::ConnectionId;
using testing::ElementsAre;
using testing::IsEmpty;

class ClientsTest : public testing::Test {
  protected:
    /// What was sent since the last call, each as its connection with the command's id, or with "push".
    std::vector<std::string> sent() {
        std::vector<std::string> texts;
        for (const auto& [connection, text] : std::exchange(sent_, {})) {
            const Value message = settings::parseJSON(text).value();
            const bool ok = message["ok"].isNil() || message["ok"] == Value(true);
            const Value& id = message["id"];
            texts.push_back(std::to_string(connection) + " " +
                            (id.isNil() ? "push" : *required(id.string())) + (ok ? "" : " in vain"));
        }
        return texts;
    }

    void receive(ConnectionId connection, const std::string& id,
                 const std::string& fields = R"("do":"state")") {
        const std::string command = R"({"id":")" + id + R"(",)" + fields + "}";
        clients_.received(connection, command);
        untaken_ += command.size();
    }

    void answerAll() {
        while (clients_.answerNext()) continue;
    }

    void showChanges() {
        desk_.phone.drain();
        desk_.application.events().collect();
        clients_.showChanges();
    }

    Desk desk_;
    std::vector<std::pair<ConnectionId, std::string>> sent_;
    std::size_t untaken_ = 0;
    Clients clients_{desk_.application,
                     [this](ConnectionId connection, std::string text) {
                         sent_.emplace_back(connection, std::move(text));
                     },
                     [this](ConnectionId, std::size_t bytes) { untaken_ -= bytes; }};
};

constexpr const char* waitForLate = R"("do":"wait","event":"darwin","name":"late","seconds":1000)";
constexpr const char* waitForNever = R"("do":"wait","event":"never","seconds":1000000)";

void post(const char* name) {
    platform::DarwinNotificationCenter::shared().post(name);
}

}  // namespace

TEST_F(ClientsTest, connections_takeTurnsAndEachKeepsItsOrder) {
    clients_.opened(1);
    clients_.opened(2);
    clients_.opened(3);
    for (const char* id : {"a", "b", "c"}) receive(1, id);
    receive(3, "d");
    receive(2, "e");
    EXPECT_TRUE(clients_.hasCommands());
    answerAll();
    EXPECT_THAT(sent(), ElementsAre("1 a", "2 e", "3 d", "1 b", "1 c"));
    EXPECT_FALSE(clients_.hasCommands());
    EXPECT_EQ(untaken_, 0U);
}

TEST_F(ClientsTest, wait_holdsUpItsOwnConnectionOnly) {
    clients_.opened(1);
    clients_.opened(2);
    receive(1, "wait", waitForLate);
    receive(1, "behind it");
    receive(2, "a");
    answerAll();
    EXPECT_THAT(sent(), ElementsAre("2 a"));
    EXPECT_GT(untaken_, 0U) << "what stands behind it is not taken yet";
    receive(2, "other", R"("do":"post","name":"late")");
    answerAll();
    EXPECT_THAT(sent(), ElementsAre("2 other", "1 wait", "1 behind it"));
    EXPECT_EQ(untaken_, 0U);
}

TEST_F(ClientsTest, wait_endsByWhatHappensByItself) {
    clients_.opened(1);
    clients_.opened(2);
    receive(1, "wait", waitForLate);
    receive(2, "a");
    answerAll();
    sent();
    post("other");
    showChanges();
    EXPECT_THAT(sent(), ElementsAre("2 push")) << "the other has had no answer yet";
    post("late");
    showChanges();
    EXPECT_THAT(sent(), ElementsAre("1 wait", "2 push"));
}

TEST_F(ClientsTest, waitingConnection_isPushedWhatChanges) {
    clients_.opened(1);
    receive(1, "a");
    receive(1, "wait", waitForLate);
    answerAll();
    EXPECT_THAT(sent(), ElementsAre("1 a"));
    desk_.list->setTitle("Changed");
    showChanges();
    EXPECT_THAT(sent(), ElementsAre("1 push"));
}

TEST_F(ClientsTest, wait_isOverAfterAMinuteAtMost) {
    clients_.opened(1);
    EXPECT_FALSE(clients_.nextDeadline());
    receive(1, "wait", waitForNever);
    const auto before = std::chrono::steady_clock::now();
    answerAll();
    const auto after = std::chrono::steady_clock::now();
    ASSERT_TRUE(clients_.nextDeadline());
    EXPECT_GE(*clients_.nextDeadline(), before + std::chrono::minutes(1));
    EXPECT_LE(*clients_.nextDeadline(), after + std::chrono::minutes(1));
}

TEST_F(ClientsTest, firstDeadline_isTheNextOne) {
    clients_.opened(1);
    clients_.opened(2);
    receive(1, "long", waitForNever);
    receive(2, "short", R"("do":"wait","event":"never","seconds":0.02)");
    answerAll();
    while (std::chrono::steady_clock::now() < *clients_.nextDeadline()) continue;
    showChanges();
    EXPECT_THAT(sent(), ElementsAre("2 short in vain"));
    EXPECT_TRUE(clients_.nextDeadline()) << "that of the other";
}

TEST_F(ClientsTest, waitAmongManyEvents_missesNone) {
    clients_.opened(1);
    clients_.opened(2);
    receive(1, "wait", waitForLate);
    answerAll();
    post("late");
    // More than are kept for somebody who asks for nothing.
    for (int i = 0; i < 20'000; ++i) platform::Journal::shared().record("log", {{"text", i}});
    receive(2, "a");
    receive(2, "b");
    answerAll();
    EXPECT_THAT(sent(), ElementsAre("1 wait", "2 a", "2 b"));
}

TEST_F(ClientsTest, closedConnection_hasItsCommandsDoneButNotThoseBehindAWait) {
    clients_.opened(1);
    clients_.opened(2);
    receive(1, "a", R"("do":"dark","on":true)");
    receive(1, "wait", waitForLate);
    receive(1, "behind it", R"("do":"dark","on":false)");
    clients_.closed(1);
    receive(2, "b");
    answerAll();
    post("late");
    showChanges();
    EXPECT_THAT(sent(), ElementsAre("1 a", "2 b", "2 push"));
    EXPECT_EQ(
        settings::parseJSON(desk_.session.answer(R"({"do":"state"})")).value()["state"]["device"]["darkMode"],
        Value(true));
    EXPECT_EQ(untaken_, 0U);
}

TEST_F(ClientsTest, wait_endsWithItsConnection) {
    clients_.opened(1);
    receive(1, "wait", waitForLate);
    receive(1, "behind it");
    answerAll();
    clients_.closed(1);
    EXPECT_FALSE(clients_.nextDeadline());
    EXPECT_EQ(untaken_, 0U);
    post("late");
    showChanges();
    answerAll();
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(ClientsTest, unknownConnection_isNobodys) {
    receive(9, "a");
    clients_.closed(9);
    EXPECT_EQ(untaken_, 0U);
    EXPECT_FALSE(clients_.answerNext());
}
