// SPDX-License-Identifier: MIT
#include "platform/foundation/CaseInsensitive.h"

#include <locale.h>
#include <wctype.h>

#include "platform/foundation/Unicode.h"

namespace platform {

namespace {

/// The system's case tables for all of Unicode, whatever the user's own locale is.
wint_t folded(char32_t letter) {
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const auto wide = static_cast<wint_t>(letter);
    return unicode ? towlower_l(towupper_l(wide, unicode), unicode) : towlower(wide);
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

}  // namespace platform
