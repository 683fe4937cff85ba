// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "settings/channels/server/FirstMessage.h"

namespace settings::server {

TEST(FirstMessage, secret_isTakenWhateverStandsBesideIt) {
    for (const char* text : {R"({"secret":"a\u00e9"})", R"( { "more": [1], "secret" : "a\u00e9" } )",
                             R"({"prove":"x","secret":"a\u00e9"})"}) {
        const auto message = parseFirstMessage(text);
        ASSERT_TRUE(message) << text;
        EXPECT_EQ(message->kind, FirstMessage::Kind::Secret);
        EXPECT_EQ(message->text, "a\xc3\xa9");
    }
}

TEST(FirstMessage, prove_asksForAProof) {
    const auto message = parseFirstMessage(R"({"prove":"nonce"})");
    ASSERT_TRUE(message);
    EXPECT_EQ(message->kind, FirstMessage::Kind::Prove);
    EXPECT_EQ(message->text, "nonce");
}

TEST(FirstMessage, anythingElse_isNone) {
    for (const std::string& text :
         {std::string(), std::string("{}"), std::string("[]"), std::string("null"), std::string("\"secret\""),
          std::string(R"({"secret":null})"), std::string(R"({"secret":7})"),
          std::string(R"({"secret":["a"]})"), std::string(R"({"prove":{}})"),
          std::string(R"({"secret":7,"prove":"a"})"), std::string(R"({"Secret":"a"})"),
          std::string(R"({"secret":"a"}x)"), std::string(R"({"secret":"a")"),
          std::string(R"({"do":"state"})"), std::string("{\"secret\":\"\xff\"}"), std::string(4000, '['),
          "{\"secret\":\"" + std::string(FirstMessage::longest, 'a') + "\"}"})
        EXPECT_FALSE(parseFirstMessage(text)) << text.substr(0, 60);
}

}  // namespace settings::server
