// SPDX-License-Identifier: MIT
#include "platform/foundation/XMLCharacters.h"

#include "platform/foundation/Unicode.h"

namespace platform {

std::optional<std::size_t> firstInvalidXML(std::string_view text) {
    std::size_t position = 0;
    while (position < text.size()) {
        const auto character = decodeUTF8(text, position);
        if (!character || !isXMLCharacter(character->codePoint)) return position;
        position += character->length;
    }
    return std::nullopt;
}

}  // namespace platform
