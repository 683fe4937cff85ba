// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

inline constexpr std::string_view hexadecimalDigits = "0123456789abcdef";
inline constexpr std::string_view capitalHexadecimalDigits = "0123456789ABCDEF";

/// Whether the character is a hexadecimal digit, small or capital.
constexpr bool isHexadecimalDigit(char character) {
    return hexadecimalDigits.contains(character) || capitalHexadecimalDigits.contains(character);
}

/// Puts the byte's two digits behind the text.
inline void appendHexadecimal(std::string& text, unsigned char byte,
                              std::string_view digits = hexadecimalDigits) {
    text += digits[byte >> 4U];
    text += digits[byte & 15U];
}

}  // namespace platform
