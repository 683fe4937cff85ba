// SPDX-License-Identifier: MIT
#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <array>
#include <span>

namespace platform {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

constexpr std::array blanks{Range{0x00, 0x20},     Range{0x7F, 0xA0},     Range{0x1680, 0x1680},
                            Range{0x180E, 0x180E}, Range{0x2000, 0x200B}, Range{0x2028, 0x2029},
                            Range{0x202F, 0x202F}, Range{0x205F, 0x2060}, Range{0x3000, 0x3000},
                            Range{0xFEFF, 0xFEFF}};

/// Beside the blanks: what a program that does not know it is to show as nothing, and Braille's empty cell.
constexpr std::array otherInvisible{
    Range{0xAD, 0xAD},       Range{0x034F, 0x034F}, Range{0x061C, 0x061C},   Range{0x115F, 0x1160},
    Range{0x17B4, 0x17B5},   Range{0x180B, 0x180F}, Range{0x200C, 0x200F},   Range{0x202A, 0x202E},
    Range{0x2061, 0x206F},   Range{0x2800, 0x2800}, Range{0x3164, 0x3164},   Range{0xFE00, 0xFE0F},
    Range{0xFFA0, 0xFFA0},   Range{0xFFF0, 0xFFF8}, Range{0x1BCA0, 0x1BCA3}, Range{0x1D173, 0x1D17A},
    Range{0xE0000, 0xE0FFF},
};

bool isIn(std::span<const Range> ranges, char32_t codePoint) {
    const auto range = std::ranges::lower_bound(ranges, codePoint, {}, &Range::last);
    return range != ranges.end() && range->first <= codePoint;
}

}  // namespace

bool isBlank(char32_t codePoint) {
    return isIn(blanks, codePoint);
}

bool isInvisible(char32_t codePoint) {
    return isBlank(codePoint) || isIn(otherInvisible, codePoint);
}

std::string_view withoutOuterBlanks(std::string_view text) {
    std::size_t begin = text.size();
    std::size_t end = 0;
    for (std::size_t at = 0; at < text.size();) {
        const auto character = decodeUTF8(text, at);
        const std::size_t length = character ? character->length : 1;
        if (!character || !isBlank(character->codePoint)) {
            begin = std::min(begin, at);
            end = at + length;
        }
        at += length;
    }
    return begin < end ? text.substr(begin, end - begin) : std::string_view();
}

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

namespace {

/// Hands each code point to `take`; whether all of the bytes are well-formed.
template <class Take>
bool decodeUTF16(std::span<const std::uint8_t> bytes, ByteOrder order, Take take) {
    if (bytes.size() % 2 != 0) return false;
    const auto unitAt = [&](std::size_t index) {
        const char32_t first = bytes[index];
        const char32_t second = bytes[index + 1];
        return order == ByteOrder::BigEndian ? (first << 8) | second : (second << 8) | first;
    };
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        char32_t unit = unitAt(i);
        if (isSurrogate(unit)) {
            if (!isHighSurrogate(unit) || i + 3 >= bytes.size() || !isLowSurrogate(unitAt(i + 2)))
                return false;
            unit = combinedSurrogates(unit, unitAt(i + 2));
            i += 2;
        }
        take(unit);
    }
    return true;
}

}  // namespace

std::optional<std::string> utf8FromUTF16(std::span<const std::uint8_t> bytes, ByteOrder order) {
    std::string text;
    text.reserve(bytes.size());
    if (!decodeUTF16(bytes, order, [&](char32_t codePoint) { appendUTF8(text, codePoint); }))
        return std::nullopt;
    return text;
}

bool isUTF16(std::span<const std::uint8_t> bytes, ByteOrder order) {
    return decodeUTF16(bytes, order, [](char32_t) {});
}

}  // namespace platform
