// SPDX-License-Identifier: MIT
#include "settings/application/RowKeyText.h"

#include <charconv>

namespace settings {

using platform::RowKey;

std::string rowKeyText(RowKey key) {
    return std::to_string(key);
}

RowKey rowKeyOf(const std::string& text) {
    RowKey key = 0;
    std::from_chars(text.data(), text.data() + text.size(), key);
    return rowKeyText(key) == text ? key : 0;
}

}  // namespace settings
