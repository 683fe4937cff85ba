// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <set>

#include "settings/channels/server/Secret.h"
#include "tests/doubles/Required.h"

namespace settings::server {

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

TEST(Secret, form_isThatOfAMadeOneOnly) {
    EXPECT_TRUE(isSecretText(*doubles::required(makeSecret())));
    for (const std::string& text :
         {std::string(), std::string(63, 'a'), std::string(65, 'a'), std::string(64, 'A'),
          std::string(63, 'a') + "\n", std::string(63, 'a') + '\0'})
        EXPECT_FALSE(isSecretText(text)) << text;
}

TEST(Secret, proof_isTheOneOfTheStandardsExamples) {
    // RFC 4231, test cases 2 and 6.
    EXPECT_EQ(proofOf("Jefe", "what do ya want for nothing?"),
              "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
    EXPECT_EQ(proofOf(std::string(131, '\xaa'), "Test Using Larger Than Block-Size Key - Hash Key First"),
              "60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54");
    EXPECT_NE(proofOf("secret", ""), proofOf("secret", std::string(1, '\0')));
}

TEST(Secret, emptySecret_letsNobodyIn) {
    EXPECT_FALSE(isSecret("", ""));
}

}  // namespace settings::server
