// SPDX-License-Identifier: MIT
#include "quietrix/Table.h"

#include <wchar.h>

#include "platform/foundation/Unicode.h"

namespace console {

std::size_t columnsOf(std::string_view text) {
    std::size_t columns = 0;
    for (std::size_t at = 0; at < text.size();) {
        const auto character = platform::decodeUTF8(text, at);
        if (!character) {
            ++columns;
            ++at;
            continue;
        }
        // Unknown characters take one column on most terminals.
        const int width = wcwidth(static_cast<wchar_t>(character->codePoint));
        columns += width < 0 ? 1 : static_cast<std::size_t>(width);
        at += character->length;
    }
    return columns;
}

}  // namespace console
