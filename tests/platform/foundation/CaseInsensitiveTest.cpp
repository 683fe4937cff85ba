// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/foundation/CaseInsensitive.h"

namespace platform {
namespace {

TEST(CaseInsensitive, lettersOfAnyAlphabet_areTheSameInBothCases) {
    EXPECT_TRUE(equalIgnoringCase("Größe", "GRÖßE"));
    EXPECT_TRUE(equalIgnoringCase("ÉCOLE", "école"));
    EXPECT_TRUE(equalIgnoringCase("ΣΟΦΟΣ", "σοφος"));
    EXPECT_FALSE(equalIgnoringCase("ecole", "école"));
    EXPECT_FALSE(equalIgnoringCase("work", "works"));
}

TEST(CaseInsensitive, order_isThatOfTheLettersWhateverTheirCase) {
    EXPECT_TRUE(compareIgnoringCase("Home", "iCloud") < 0);
    EXPECT_TRUE(compareIgnoringCase("iCloud", "WORK") < 0);
    EXPECT_TRUE(compareIgnoringCase("work", "Work") == 0);
    EXPECT_TRUE(compareIgnoringCase("work", "Works") < 0);
    EXPECT_TRUE(compareIgnoringCase("works", "Work") > 0);
    EXPECT_TRUE(compareIgnoringCase("", "a") < 0);
}

TEST(CaseInsensitive, bytesThatAreNoText_areComparedAsTheyAre) {
    EXPECT_TRUE(equalIgnoringCase("a\xFFz", "A\xFFz"));
    EXPECT_FALSE(equalIgnoringCase("a\xFFz", "A\xFFZ"));
    EXPECT_TRUE(compareIgnoringCase("a\xFE", "A\xFF") < 0);
}

TEST(CaseInsensitive, part_isFoundWhateverTheCase) {
    EXPECT_TRUE(containsIgnoringCase("Große Straße", "STRA"));
    EXPECT_TRUE(containsIgnoringCase("ÉCOLE", "école"));
    EXPECT_TRUE(containsIgnoringCase("Работа", "бОТ"));
    EXPECT_TRUE(containsIgnoringCase("aab", "AB"));
    EXPECT_TRUE(containsIgnoringCase("Work", ""));
    EXPECT_TRUE(containsIgnoringCase("", ""));
    EXPECT_FALSE(containsIgnoringCase("", "a"));
    EXPECT_FALSE(containsIgnoringCase("Work", "works"));
    EXPECT_FALSE(containsIgnoringCase("ecole", "école"));
}

TEST(CaseInsensitive, partThatIsNoText_isFoundByteForByte) {
    EXPECT_TRUE(containsIgnoringCase("a\xFF\xFEz", "\xFEZ"));
    EXPECT_FALSE(containsIgnoringCase("a\xFFz", "\xFE"));
    // Half a letter is not in the letter.
    EXPECT_FALSE(containsIgnoringCase("é", "\xA9"));
}

}  // namespace
}  // namespace platform
