// SPDX-License-Identifier: MIT
#include "platform/foundation/XMLCharacters.h"

#include <array>

#include "platform/foundation/Unicode.h"

namespace platform {

namespace {

constexpr std::array<bool, 256> makeAllowedBytes() {
    std::array<bool, 256> allowed{};
    for (std::size_t byte = 0; byte < 0x80; ++byte)
        allowed[byte] = isXMLCharacter(static_cast<char32_t>(byte));
    return allowed;
}

/// The characters of one byte, of which documents are mostly made.
constexpr std::array<bool, 256> isAllowedByte = makeAllowedBytes();

}  // namespace

std::optional<std::size_t> firstInvalidXML(std::string_view text) {
    std::size_t position = 0;
    while (position < text.size()) {
        if (isAllowedByte[static_cast<unsigned char>(text[position])]) {
            ++position;
            continue;
        }
        const auto character = decodeUTF8(text, position);
        if (!character || !isXMLCharacter(character->codePoint)) return position;
        position += character->length;
    }
    return std::nullopt;
}

}  // namespace platform
