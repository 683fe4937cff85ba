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

bool isMover(char32_t character) {
    const bool isEmbedding = character >= 0x202A && character <= 0x202E;
    const bool isIsolate = character >= 0x2066 && character <= 0x2069;
    return isEmbedding || isIsolate || platform::isControlOrLineBreak(character);
}

void appendEscape(std::string& text, char byte) {
    text += "\\x";
    platform::appendHexadecimal(text, static_cast<unsigned char>(byte), platform::capitalHexadecimalDigits);
}

/// Escapes what is no UTF-8, backslashes, and the characters that are to be.
template <class IsEscaped>
std::string escaped(std::string_view bytes, IsEscaped isEscaped) {
    std::string text;
    for (std::size_t at = 0; at < bytes.size();) {
        const auto character = platform::decodeUTF8(bytes, at);
        const std::size_t length = character ? character->length : 1;
        if (character && bytes[at] != '\\' && !isEscaped(character->codePoint)) {
            text.append(bytes.substr(at, length));
        } else {
            for (const char byte : bytes.substr(at, length)) appendEscape(text, byte);
        }
        at += length;
    }
    return text;
}

}  // namespace

std::string escapedText(std::string_view bytes) {
    if (!platform::firstInvalidUTF8(bytes) && !looksEscaped(bytes)) return std::string(bytes);
    return escaped(bytes, [](char32_t) { return false; });
}

bool movesText(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const auto character = platform::decodeUTF8(text, at);
        if (!character || isMover(character->codePoint)) return true;
        at += character->length;
    }
    return false;
}

std::string visibleText(std::string_view bytes) {
    if (!movesText(bytes) && !looksEscaped(bytes)) return std::string(bytes);
    return escaped(bytes, [](char32_t character) { return isMover(character); });
}

std::string quotedText(std::string_view bytes) {
    return '"' + escapedText(bytes) + '"';
}

}  // namespace device
