// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace platform {

/// Whether an XML document may hold the code point at all, written out or as a numeric reference.
constexpr bool isXMLCharacter(char32_t codePoint) {
    if (codePoint < 0x20) return codePoint == '\t' || codePoint == '\n' || codePoint == '\r';
    return (codePoint < 0xD800 || codePoint > 0xDFFF) && codePoint != 0xFFFE && codePoint != 0xFFFF &&
           codePoint <= 0x10FFFF;
}

constexpr bool isXMLBlank(char character) {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

/// The offset of the first byte that is no UTF-8 or begins a character that XML does not allow; empty for
/// none.
std::optional<std::size_t> firstInvalidXML(std::string_view text);

}  // namespace platform
