// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "platform/foundation/Object.h"
#include "settings/channels/JSON.h"

namespace {

using platform::Array;
using platform::Dictionary;
using platform::Value;
using settings::jsonText;
using settings::parseJSON;

TEST(JSON, everyKindOfValue_readsBackAsItWas) {
    const Value value = Dictionary{{"nil", nullptr},
                                   {"yes", true},
                                   {"whole", -7},
                                   {"large", std::numeric_limits<std::uint64_t>::max()},
                                   {"real", 0.1},
                                   {"text", "Grüße\n\"😘\"\\"},
                                   {"list", Array{1, Array{}, Dictionary{}}}};
    EXPECT_EQ(parseJSON(jsonText(value)).value(), value);
}

TEST(JSON, numbersThatAreNotFinite_becomeNull) {
    EXPECT_EQ(
        jsonText(Array{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                       -std::numeric_limits<double>::infinity()}),
        "[null,null,null]");
}

TEST(JSON, wholeReals_areWrittenWithoutExponent) {
    EXPECT_EQ(jsonText(Array{44.0, -3.0, 0.0}), "[44,-3,0]");
}

TEST(JSON, bytesThatAreNoUTF8_becomeReplacementCharacters) {
    const std::string text = jsonText(Dictionary{{"k\xff", "a\xc3(\x80z"}});
    EXPECT_EQ(text, "{\"k\xEF\xBF\xBD\":\"a\xEF\xBF\xBD(\xEF\xBF\xBDz\"}");
    EXPECT_TRUE(parseJSON(text).has_value());
}

TEST(JSON, objectsAndData_areWrittenAsWhatIsLeftOfThem) {
    EXPECT_EQ(jsonText(Array{std::make_shared<platform::Object>(), platform::Data{1, 255}}),
              "[null,\"<01 ff>\"]");
}

TEST(JSON, malformedText_isAnError) {
    for (const std::string text : {"", "{", "[1,]", "nul", "\"\xff\"", "{} {}", "\"\\ud800\""}) {
        EXPECT_FALSE(parseJSON(text).has_value()) << text;
    }
}

TEST(JSON, deepNesting_isAnError) {
    EXPECT_TRUE(parseJSON(std::string(20, '[') + std::string(20, ']')).has_value());
    EXPECT_FALSE(parseJSON(std::string(100'000, '[')).has_value());
}

}  // namespace
