// SPDX-License-Identifier: MIT
#include "settings/state/AttachmentPreview.h"

#include <algorithm>
#include <string_view>

#include "platform/foundation/Unicode.h"

namespace settings {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t pictureOfNull = 0x2400;
constexpr char32_t pictureOfDelete = 0x2421;
constexpr char32_t deleteCharacter = 127;

/// What a reader sees of a character that has no shape of its own.
char32_t visible(char32_t character) {
    if (character == '\t' || character == '\n' || character == '\r') return character;
    if (character < ' ') return pictureOfNull + character;
    return character == deleteCharacter ? pictureOfDelete : character;
}

}  // namespace

AttachmentPreview AttachmentPreview::of(const platform::Data& data) {
    const std::string_view all(reinterpret_cast<const char*>(data.data()), data.size());
    const std::size_t end = std::min(all.size(), longest);
    AttachmentPreview preview;
    preview.text.reserve(end);
    for (std::size_t at = 0; at < end;) {
        const auto character = platform::decodeUTF8(all, at);
        // A last character that goes on beyond what is shown is left out whole.
        if (character && at + character->length > end) break;
        platform::appendUTF8(preview.text, character ? visible(character->codePoint) : replacement);
        at += character ? character->length : 1;
        preview.bytes = at;
    }
    return preview;
}

}  // namespace settings
