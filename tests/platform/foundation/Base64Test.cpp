// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/foundation/Base64.h"

namespace {

using platform::base64;
using platform::Data;
using platform::dataFromBase64;

Data bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

TEST(Base64, knownTexts_areWrittenAndRead) {
    const std::vector<std::pair<std::string, std::string>> pairs{
        {"", ""},        {"f", "Zg=="},        {"fo", "Zm8="},
        {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"foobar", "Zm9vYmFy"}};
    for (const auto& [plain, encoded] : pairs) {
        EXPECT_EQ(base64(bytes(plain)), encoded);
        EXPECT_EQ(dataFromBase64(encoded), bytes(plain));
    }
}

TEST(Base64, everyByteValue_survives) {
    Data all;
    for (int byte = 0; byte < 256; ++byte) all.push_back(static_cast<std::uint8_t>(byte));
    EXPECT_EQ(dataFromBase64(base64(all)), all);
}

TEST(Base64, blanksAndLineBreaks_areReadOver) {
    EXPECT_EQ(dataFromBase64("\n\tZm 9v\r\nYg = =\n"), bytes("foob"));
}

TEST(Base64, malformedText_isRefused) {
    for (const char* bad : {"Z", "Zg", "Zg=", "Zg===", "Zm8", "Zm9v=", "=", "Zg==Zg==", "Zm9v-_", "Zm9vé"}) {
        EXPECT_EQ(dataFromBase64(bad), std::nullopt) << bad;
    }
}

}  // namespace
