// SPDX-License-Identifier: MIT
#include "device/EscapedText.h"

#include <algorithm>

#include "platform/foundation/Hexadecimal.h"
#include "platform/foundation/Unicode.h"

namespace device {

namespace {

bool looksEscaped(std::string_view text) {
    for (std::size_t at = text.find("\\x"); at != std::string_view::npos; at = text.find("\\x", at + 1)) {
        const std::string_view pair = text.substr(at + 2, 2);
        if (pair.size() == 2 &&
            std::ranges::all_of(pair, [](char c) { return platform::capitalHexadecimalDigits.contains(c); }))
            return true;
    }
    return false;
}

void appendEscape(std::string& text, char byte) {
    text += "\\x";
    platform::appendHexadecimal(text, static_cast<unsigned char>(byte), platform::capitalHexadecimalDigits);
}

}  // namespace

std::string escapedText(std::string_view bytes) {
    if (!platform::firstInvalidUTF8(bytes) && !looksEscaped(bytes)) return std::string(bytes);
    std::string text;
    for (std::size_t at = 0; at < bytes.size();) {
        const auto character = platform::decodeUTF8(bytes, at);
        if (character && bytes[at] != '\\') {
            text.append(bytes.substr(at, character->length));
            at += character->length;
        } else {
            appendEscape(text, bytes[at]);
            ++at;
        }
    }
    return text;
}

std::string quotedText(std::string_view bytes) {
    return '"' + escapedText(bytes) + '"';
}

}  // namespace device
