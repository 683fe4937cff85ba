// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <vector>

#include "platform/foundation/Unicode.h"

namespace {

using platform::appendUTF8;
using platform::ByteOrder;
using platform::decodeUTF8;
using platform::firstInvalidUTF8;
using platform::utf8FromUTF16;

TEST(Unicode, everyCodePoint_survivesEncodingAndDecoding) {
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        if (platform::isSurrogate(codePoint)) continue;
        std::string text;
        appendUTF8(text, codePoint);
        const auto decoded = decodeUTF8(text, 0);
        ASSERT_TRUE(decoded && decoded->codePoint == codePoint && decoded->length == text.size())
            << static_cast<std::uint32_t>(codePoint);
    }
}

TEST(Unicode, malformedUTF8_isFoundAtItsFirstByte) {
    EXPECT_EQ(firstInvalidUTF8("ab\xC3\xA9"), std::nullopt);
    for (const std::string_view bad :
         {"\x80", "\xC0\xAF", "\xC3", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
          "\xF8\x88\x80\x80\x80", "\xE2\x82", "\xFF", "\xC3("}) {
        EXPECT_EQ(firstInvalidUTF8("ab" + std::string(bad)), 2U);
    }
}

TEST(Unicode, utf16_isReadInBothByteOrdersWithSurrogates) {
    const std::vector<std::uint8_t> big{0x00, 'a', 0x20, 0xAC, 0xD8, 0x3D, 0xDE, 0x00};
    const std::vector<std::uint8_t> little{'a', 0x00, 0xAC, 0x20, 0x3D, 0xD8, 0x00, 0xDE};
    EXPECT_EQ(utf8FromUTF16(big, ByteOrder::BigEndian), "a€😀");
    EXPECT_EQ(utf8FromUTF16(little, ByteOrder::LittleEndian), "a€😀");
    EXPECT_TRUE(platform::isUTF16(big, ByteOrder::BigEndian));
}

TEST(Unicode, utf16WithHalfAPairOrHalfAUnit_isRefused) {
    const std::vector<std::vector<std::uint8_t>> bad{
        {0xD8, 0x3D}, {0xDE, 0x00}, {0xD8, 0x3D, 0x00, 'a'}, {0xDE, 0x00, 0xD8, 0x3D}, {0x00}};
    for (const auto& bytes : bad) {
        EXPECT_EQ(utf8FromUTF16(bytes, ByteOrder::BigEndian), std::nullopt);
        EXPECT_FALSE(platform::isUTF16(bytes, ByteOrder::BigEndian));
    }
}

TEST(Unicode, blanks_meanNothingAtEitherEnd) {
    for (const char32_t blank : {U'\0', U'\t', U'\n', U' ', U'\x7F', U'\x85', U'\xA0', U'\u1680', U'\u2000',
                                 U'\u200B', U'\u2028', U'\u2029', U'\u202F', U'\u2060', U'\u3000', U'\uFEFF'})
        EXPECT_TRUE(platform::isBlank(blank) && platform::isInvisible(blank))
            << static_cast<std::uint32_t>(blank);
    for (const char32_t shaping :
         {U'\xAD', U'\u200C', U'\u200D', U'\u200F', U'\u2800', U'\u3164', U'\uFE0F', U'\U000E007F'})
        EXPECT_TRUE(!platform::isBlank(shaping) && platform::isInvisible(shaping))
            << static_cast<std::uint32_t>(shaping);
    for (const char32_t letter :
         {U'!', U'~', U'\xA1', U'\u1FFF', U'\u2010', U'\u3001', U'\uFEFE', U'\U0001F600', U'\U0010FFFF'})
        EXPECT_FALSE(platform::isInvisible(letter)) << static_cast<std::uint32_t>(letter);
}

TEST(Unicode, lineBreaks_haveNoPlaceInOneLine) {
    for (const char32_t end : {U'\n', U'\r', U'\v', U'\x7F', U'\x85', U'\u2028', U'\u2029'})
        EXPECT_TRUE(platform::isControlOrLineBreak(end));
    for (const char32_t other : {U' ', U'a', U'\xA0', U'\u200B', U'\uFEFF'})
        EXPECT_FALSE(platform::isControlOrLineBreak(other));
}

TEST(Unicode, outerBlanks_areDroppedAndNothingElse) {
    EXPECT_EQ(platform::withoutOuterBlanks("\uFEFF\u3000 a\u00A0b\u200B\r\n"), "a\u00A0b");
    EXPECT_EQ(platform::withoutOuterBlanks(" \xFF\xA0 "), "\xFF\xA0");
    EXPECT_EQ(platform::withoutOuterBlanks("\u00A0\u2028"), "");
    EXPECT_EQ(platform::withoutOuterBlanks(""), "");
}

}  // namespace
