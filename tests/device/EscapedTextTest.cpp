// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "device/EscapedText.h"
#include "platform/foundation/Unicode.h"

namespace {

using device::escapedText;
using namespace std::string_literals;

TEST(EscapedText, validText_staysAsItIs) {
    for (const std::string& text : {""s, "Café 日本"s, "C:\\Users"s, "\\x"s, "\\xe9"s, "\\xE"s, "a\0b"s})
        EXPECT_EQ(escapedText(text), text);
}

TEST(EscapedText, invalidBytes_areShownAsEscapes) {
    EXPECT_EQ(escapedText("caf\xE9"), "caf\\xE9");
    EXPECT_EQ(escapedText("\xC3"), "\\xC3");
    EXPECT_EQ(escapedText("é\xFF"), "é\\xFF");
    EXPECT_EQ(escapedText("a\\\xFF"), "a\\x5C\\xFF");
}

TEST(EscapedText, textThatLooksLikeAnEscape_isEscapedItself) {
    EXPECT_EQ(escapedText("caf\\xE9"), "caf\\x5CxE9");
    EXPECT_EQ(escapedText("\\x5C"), "\\x5Cx5C");
}

TEST(EscapedText, differentBytes_giveDifferentTexts) {
    // Everything of up to 6 of the letters that escapes are made of, and a byte that is no UTF-8.
    const std::string letters = "\\xE9\xE9"s;
    std::vector<std::string> all{""};
    std::set<std::string> texts;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const std::string text = escapedText(all[i]);
        EXPECT_FALSE(platform::firstInvalidUTF8(text));
        EXPECT_TRUE(texts.insert(text).second) << text;
        if (all[i].size() == 6) continue;
        for (const char letter : letters) all.push_back(all[i] + letter);
    }
    EXPECT_EQ(texts.size(), all.size());
}

TEST(EscapedText, quoted_standsBetweenMarks) {
    EXPECT_EQ(device::quotedText("caf\xE9"), "\"caf\\xE9\"");
}

TEST(VisibleText, plainText_staysAsItIs) {
    for (const char* text : {"", "Work", "caf\xC3\xA9 \xE6\x97\xA5", "C:\\new", "\xE2\x80\x8Ftext"})
        EXPECT_EQ(text, device::visibleText(text));
}

TEST(VisibleText, whatMovesTheCursorOrTheText_isAnEscape) {
    EXPECT_EQ("\\x1B[2Jred", device::visibleText("\x1B[2Jred"));
    EXPECT_EQ("a\\x0Ab", device::visibleText("a\nb"));
    EXPECT_EQ("\\xC2\\x9B2J", device::visibleText("\xC2\x9B\x32J"));
    EXPECT_EQ("\\xE2\\x80\\xAEx\\xE2\\x81\\xA9", device::visibleText("\xE2\x80\xAEx\xE2\x81\xA9"));
    EXPECT_EQ("\\xE9", device::visibleText("\xE9"));
    EXPECT_EQ("\\x5Cx1B", device::visibleText("\\x1B"));
}

}  // namespace
