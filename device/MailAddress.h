// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace device {

/// Whether a mail can be sent from and to this: one word of ASCII without brackets, quotes and commas, which
/// would be read as something else in a message, with one "@" that stands neither first nor last. Other
/// characters than ASCII's would need a kind of message that not every mail program takes.
bool isMailAddress(std::string_view text);

}  // namespace device
