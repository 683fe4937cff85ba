// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace platform {

enum class ByteOrder { BigEndian, LittleEndian };

/// The well-formed UTF-8 sequence that begins at `position`: its code point and its length in bytes. Empty
/// for overlong forms, surrogates, values above U+10FFFF, and at the end of the text.
struct DecodedCharacter {
    char32_t codePoint = 0;
    std::size_t length = 0;
};
std::optional<DecodedCharacter> decodeUTF8(std::string_view text, std::size_t position);

/// The offset of the first byte that is not part of well-formed UTF-8, or empty when all of it is.
std::optional<std::size_t> firstInvalidUTF8(std::string_view text);

/// Appends the code point, which must be no surrogate and at most U+10FFFF.
void appendUTF8(std::string& text, char32_t codePoint);

constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr bool isSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}
constexpr char32_t combinedSurrogates(char32_t high, char32_t low) {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

/// Whether the character has no place in a text of one line.
constexpr bool isControlOrLineBreak(char32_t codePoint) {
    return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0) || codePoint == 0x2028 ||
           codePoint == 0x2029;
}
/// Whether the character is a blank of any width, none included, a line break, a control character, or the
/// byte-order mark: what means nothing at either end of a text.
bool isBlank(char32_t codePoint);
/// Whether a text of nothing but such characters shows nothing: blanks, joiners, direction marks, fillers,
/// variation selectors, tags. Beside others they can mean something.
bool isInvisible(char32_t codePoint);
/// The text without the blanks at both ends. Bytes that are no UTF-8 are no blanks.
std::string_view withoutOuterBlanks(std::string_view text);

/// UTF-16 as UTF-8. Empty for an odd number of bytes and for surrogates without their other half: they have
/// no UTF-8 form, and replacing them would change the text silently.
std::optional<std::string> utf8FromUTF16(std::span<const std::uint8_t> bytes, ByteOrder order);
/// Whether the above would give a text.
bool isUTF16(std::span<const std::uint8_t> bytes, ByteOrder order);

}  // namespace platform
