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
}

TEST(Unicode, utf16WithHalfAPairOrHalfAUnit_isRefused) {
    const std::vector<std::vector<std::uint8_t>> bad{
        {0xD8, 0x3D}, {0xDE, 0x00}, {0xD8, 0x3D, 0x00, 'a'}, {0xDE, 0x00, 0xD8, 0x3D}, {0x00}};
    for (const auto& bytes : bad) EXPECT_EQ(utf8FromUTF16(bytes, ByteOrder::BigEndian), std::nullopt);
}

}  // namespace
