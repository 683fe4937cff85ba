// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/foundation/Hexadecimal.h"

namespace {

using namespace platform;

TEST(Hexadecimal, byte_isTwoDigitsBehindTheText) {
    std::string text = "#";
    for (const int byte : {0x00, 0x0F, 0xF0, 0xAB}) appendHexadecimal(text, static_cast<unsigned char>(byte));
    EXPECT_EQ("#000ff0ab", text);
    appendHexadecimal(text, 0xCD, capitalHexadecimalDigits);
    EXPECT_EQ("#000ff0abCD", text);
}

TEST(Hexadecimal, digits_areThoseOfBothCasesAndNoOther) {
    int digits = 0;
    for (int character = 0; character < 256; ++character)
        digits += isHexadecimalDigit(static_cast<char>(character));
    EXPECT_EQ(22, digits);
    for (const char character : {'0', '9', 'a', 'f', 'A', 'F'})
        EXPECT_TRUE(isHexadecimalDigit(character)) << character;
}

}  // namespace
