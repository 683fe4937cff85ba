// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

#include "settings/exploring/Shrinking.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Numbers = std::vector<int>;

Numbers upTo(int end) {
    Numbers numbers(static_cast<std::size_t>(end));
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

bool holds(const Numbers& numbers, int number) {
    return std::ranges::find(numbers, number) != numbers.end();
}

TEST(Shrinking, whatIsNeeded_isLeftInItsOrder) {
    const auto fails = [](const Numbers& numbers) {
        return holds(numbers, 3) && holds(numbers, 77) && holds(numbers, 199);
    };
    EXPECT_THAT(settings::shrink<int>(upTo(250), fails), ElementsAre(3, 77, 199));
}

TEST(Shrinking, listThatFailsByItself_isEmpty) {
    EXPECT_THAT(settings::shrink<int>(upTo(9), [](const Numbers&) { return true; }), IsEmpty());
}

TEST(Shrinking, whatStandsAtTheEnd_takesFewTries) {
    int tries = 0;
    const auto fails = [&](const Numbers& numbers) {
        ++tries;
        return holds(numbers, 248) && holds(numbers, 249);
    };
    EXPECT_THAT(settings::shrink<int>(upTo(250), fails), ElementsAre(248, 249));
    EXPECT_LT(tries, 10);
}

TEST(Shrinking, entriesThatGoOnlyTogether_go) {
    // 1 and 4 are there and back again, with something that is needed between them.
    const auto fails = [](const Numbers& numbers) {
        return holds(numbers, 2) && holds(numbers, 5) && holds(numbers, 1) == holds(numbers, 4);
    };
    EXPECT_THAT(settings::shrink<int>(upTo(6), fails), ElementsAre(2, 5));
}

TEST(Shrinking, whoSaysNoFromSomeTimeOn_keepsWhatItHasBecome) {
    int tries = 0;
    const auto fails = [&](const Numbers& numbers) { return ++tries <= 12 && holds(numbers, 0); };
    const Numbers left = settings::shrink<int>(upTo(250), fails);
    EXPECT_TRUE(holds(left, 0));
    EXPECT_LT(left.size(), 250U);
}

}  // namespace
