// SPDX-License-Identifier: MIT
#include "platform/foundation/Base64.h"

#include <algorithm>

#include "platform/foundation/XMLCharacters.h"

namespace platform {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::optional<std::uint32_t> digit(char character) {
    if (character >= 'A' && character <= 'Z') return static_cast<std::uint32_t>(character - 'A');
    if (character >= 'a' && character <= 'z') return static_cast<std::uint32_t>(character - 'a' + 26);
    if (character >= '0' && character <= '9') return static_cast<std::uint32_t>(character - '0' + 52);
    if (character == '+') return 62;
    if (character == '/') return 63;
    return std::nullopt;
}

}  // namespace

std::string base64(const Data& data) {
    std::string text;
    text.reserve((data.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < data.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, data.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k) group = (group << 8) | (k < count ? data[i + k] : 0U);
        for (std::size_t k = 0; k < 4; ++k) {
            text += k <= count ? alphabet[(group >> (18 - 6 * k)) & 0x3F] : '=';
        }
    }
    return text;
}

std::optional<Data> dataFromBase64(std::string_view text) {
    Data data;
    data.reserve(text.size() / 4 * 3);
    std::uint32_t group = 0;
    std::size_t digits = 0;
    std::size_t padding = 0;
    for (const char character : text) {
        if (isXMLBlank(character)) continue;
        if (character == '=') {
            ++padding;
            continue;
        }
        const auto value = digit(character);
        if (!value || padding > 0) return std::nullopt;
        group = (group << 6) | *value;
        if (++digits % 4 != 0) continue;
        data.push_back(static_cast<std::uint8_t>(group >> 16));
        data.push_back(static_cast<std::uint8_t>(group >> 8));
        data.push_back(static_cast<std::uint8_t>(group));
        group = 0;
    }
    const std::size_t rest = digits % 4;
    if (rest == 1 || padding != (rest == 0 ? 0 : 4 - rest)) return std::nullopt;
    if (rest == 2) data.push_back(static_cast<std::uint8_t>(group >> 4));
    if (rest == 3) {
        data.push_back(static_cast<std::uint8_t>(group >> 10));
        data.push_back(static_cast<std::uint8_t>(group >> 2));
    }
    return data;
}

}  // namespace platform
