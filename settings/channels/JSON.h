// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace settings {

/// How deep containers may nest in what comes from anybody.
inline constexpr std::size_t foreignJSONDepth = 32;

/// Reads one JSON text. Containers nest at most `depth` deep, and text must be well-formed UTF-8; the error
/// says what is wrong. Of a key that comes twice the last value stands. Any thread.
platform::Result<platform::Value> parseJSON(std::string_view text, std::size_t depth = foreignJSONDepth);

/// Writes a value as JSON in one line. What JSON has no form for becomes the nearest that it has: numbers
/// that are not finite and objects are null, dates and data their descriptions, bytes that are no UTF-8 the
/// replacement character. Any thread.
std::string jsonText(const platform::Value& value);

}  // namespace settings
