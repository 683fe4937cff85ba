// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <set>

#include "settings/server/Secret.h"

namespace settings {

TEST(Secret, made_is64HexadecimalDigitsAndDiffersEachTime) {
    std::set<std::string> seen;
    for (int index = 0; index < 50; ++index) {
        const auto secret = makeSecret();
        ASSERT_TRUE(secret.has_value());
        EXPECT_EQ(secret->size(), 64u);
        EXPECT_EQ(secret->find_first_not_of("0123456789abcdef"), std::string::npos);
        EXPECT_TRUE(seen.insert(*secret).second);
    }
}

TEST(Secret, candidateDiffersAnywhere_isRefused) {
    const std::string secret = "0123456789abcdef";
    EXPECT_TRUE(isSecret(secret, secret));
    for (std::size_t index = 0; index < secret.size(); ++index) {
        std::string candidate = secret;
        candidate[index] = 'x';
        EXPECT_FALSE(isSecret(candidate, secret)) << index;
    }
}

TEST(Secret, candidateOfAnotherLength_isRefused) {
    EXPECT_FALSE(isSecret("0123", "01234"));
    EXPECT_FALSE(isSecret("01234", "0123"));
    EXPECT_FALSE(isSecret("", "0123"));
}

TEST(Secret, emptySecret_letsNobodyIn) {
    EXPECT_FALSE(isSecret("", ""));
}

}  // namespace settings
