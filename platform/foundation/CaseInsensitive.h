// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace platform {

/// Whether two UTF-8 texts are the same but for upper and lower case, letter by letter (simple case mapping).
/// Bytes that are no UTF-8 must be equal to be the same.
bool equalIgnoringCase(std::string_view left, std::string_view right);

}  // namespace platform
