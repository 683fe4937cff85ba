// SPDX-License-Identifier: MIT
#include "device/MailAddress.h"

#include <algorithm>

namespace device {

bool isMailAddress(std::string_view text) {
    constexpr std::string_view special = "<>(),;:\"\\[]";
    return std::ranges::count(text, '@') == 1 && !text.starts_with('@') && !text.ends_with('@') &&
           std::ranges::all_of(text, [&](char c) { return c > ' ' && c <= '~' && !special.contains(c); });
}

}  // namespace device
