// SPDX-License-Identifier: MIT
#include "platform/foundation/CaseInsensitive.h"

#include <locale.h>
#include <wctype.h>

#include <string>

#include "platform/foundation/Unicode.h"

namespace platform {

namespace {

/// The system's case tables for all of Unicode, whatever the user's own locale is.
wint_t folded(char32_t letter) {
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const auto wide = static_cast<wint_t>(letter);
    return unicode ? towlower_l(towupper_l(wide, unicode), unicode) : towlower(wide);
}

/// The letters of a text without their case; a byte that is no UTF-8 is a letter of its own, beyond Unicode.
std::u32string foldedText(std::string_view text) {
    constexpr char32_t beyondUnicode = 0x110000;
    std::u32string letters;
    letters.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const auto letter = decodeUTF8(text, at);
        letters += letter ? static_cast<char32_t>(folded(letter->codePoint))
                          : beyondUnicode + static_cast<unsigned char>(text[at]);
        at += letter ? letter->length : 1;
    }
    return letters;
}

}  // namespace

std::strong_ordering compareIgnoringCase(std::string_view left, std::string_view right) {
    std::size_t leftAt = 0;
    std::size_t rightAt = 0;
    while (leftAt < left.size() && rightAt < right.size()) {
        const auto leftLetter = decodeUTF8(left, leftAt);
        const auto rightLetter = decodeUTF8(right, rightAt);
        if (!leftLetter || !rightLetter) return left.substr(leftAt) <=> right.substr(rightAt);
        const auto order = folded(leftLetter->codePoint) <=> folded(rightLetter->codePoint);
        if (order != std::strong_ordering::equal) return order;
        leftAt += leftLetter->length;
        rightAt += rightLetter->length;
    }
    return left.size() - leftAt <=> right.size() - rightAt;
}

bool equalIgnoringCase(std::string_view left, std::string_view right) {
    return compareIgnoringCase(left, right) == std::strong_ordering::equal;
}

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    return foldedText(text).find(foldedText(part)) != std::u32string::npos;
}

}  // namespace platform
