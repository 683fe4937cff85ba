// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Value.h"

namespace platform {

/// With padding, in one line.
std::string base64(const Data& data);

/// Blanks and line breaks may stand anywhere. Empty for other foreign characters, for padding that is missing
/// or not at the end, and for a last group of a single character.
std::optional<Data> dataFromBase64(std::string_view text);

}  // namespace platform
