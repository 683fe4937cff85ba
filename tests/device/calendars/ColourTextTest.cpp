// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "device/calendars/ColourText.h"

namespace {

using device::colourFromText;

TEST(ColourText, digits_withOrWithoutAlpha) {
    EXPECT_EQ(colourFromText("#34C759"), 0x34C759U);
    EXPECT_EQ(colourFromText("#34c75980"), 0x34C759U);
    EXPECT_EQ(colourFromText("#fa0"), 0xFFAA00U);
    EXPECT_EQ(colourFromText(" #FF9500\r\n"), 0xFF9500U);
    EXPECT_EQ(colourFromText("\xEF\xBB\xBF\u00A0#FF9500\u0085"), 0xFF9500U);
}

TEST(ColourText, names_inAnyCase) {
    EXPECT_EQ(colourFromText("aliceblue"), 0xF0F8FFU);
    EXPECT_EQ(colourFromText("YellowGreen"), 0x9ACD32U);
    EXPECT_EQ(colourFromText("RED"), 0xFF0000U);
}

TEST(ColourText, anythingElse_isNone) {
    for (const char* text : {"", " ", "#", "34C759", "#34C75", "#34C7591", "#GGGGGG", "#-12345", "#+12345",
                             "reddish", "red green", "#0x1234"})
        EXPECT_FALSE(colourFromText(text)) << text;
}

}  // namespace
