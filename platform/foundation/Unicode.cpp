// SPDX-License-Identifier: MIT
#include "platform/foundation/Unicode.h"

namespace platform {

std::optional<DecodedCharacter> decodeUTF8(std::string_view text, std::size_t position) {
    if (position >= text.size()) return std::nullopt;
    const auto byteAt = [&](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
    const std::uint8_t first = byteAt(position);
    if (first < 0x80) return DecodedCharacter{first, 1};

    std::size_t length = 0;
    char32_t codePoint = 0;
    char32_t smallest = 0;
    if ((first & 0xE0) == 0xC0) {
        length = 2, codePoint = first & 0x1F, smallest = 0x80;
    } else if ((first & 0xF0) == 0xE0) {
        length = 3, codePoint = first & 0x0F, smallest = 0x800;
    } else if ((first & 0xF8) == 0xF0) {
        length = 4, codePoint = first & 0x07, smallest = 0x10000;
    } else {
        return std::nullopt;
    }
    if (text.size() - position < length) return std::nullopt;
    for (std::size_t i = 1; i < length; ++i) {
        const std::uint8_t next = byteAt(position + i);
        if ((next & 0xC0) != 0x80) return std::nullopt;
        codePoint = (codePoint << 6) | (next & 0x3F);
    }
    if (codePoint < smallest || codePoint > 0x10FFFF || isSurrogate(codePoint)) return std::nullopt;
    return DecodedCharacter{codePoint, length};
}

std::optional<std::size_t> firstInvalidUTF8(std::string_view text) {
    std::size_t position = 0;
    while (position < text.size()) {
        if (static_cast<std::uint8_t>(text[position]) < 0x80) {
            ++position;
            continue;
        }
        const auto character = decodeUTF8(text, position);
        if (!character) return position;
        position += character->length;
    }
    return std::nullopt;
}

void appendUTF8(std::string& text, char32_t codePoint) {
    const auto append = [&](char32_t byte) { text += static_cast<char>(static_cast<std::uint8_t>(byte)); };
    if (codePoint < 0x80) {
        append(codePoint);
    } else if (codePoint < 0x800) {
        append(0xC0 | (codePoint >> 6));
        append(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        append(0xE0 | (codePoint >> 12));
        append(0x80 | ((codePoint >> 6) & 0x3F));
        append(0x80 | (codePoint & 0x3F));
    } else {
        append(0xF0 | (codePoint >> 18));
        append(0x80 | ((codePoint >> 12) & 0x3F));
        append(0x80 | ((codePoint >> 6) & 0x3F));
        append(0x80 | (codePoint & 0x3F));
    }
}

std::optional<std::string> utf8FromUTF16(std::span<const std::uint8_t> bytes, ByteOrder order) {
    if (bytes.size() % 2 != 0) return std::nullopt;
    const auto unitAt = [&](std::size_t index) {
        const char32_t first = bytes[index];
        const char32_t second = bytes[index + 1];
        return order == ByteOrder::BigEndian ? (first << 8) | second : (second << 8) | first;
    };
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        char32_t unit = unitAt(i);
        if (isSurrogate(unit)) {
            if (!isHighSurrogate(unit) || i + 3 >= bytes.size() || !isLowSurrogate(unitAt(i + 2))) {
                return std::nullopt;
            }
            unit = combinedSurrogates(unit, unitAt(i + 2));
            i += 2;
        }
        appendUTF8(text, unit);
    }
    return text;
}

}  // namespace platform
