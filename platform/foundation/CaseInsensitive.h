// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <string_view>

namespace platform {

/// Whether two UTF-8 texts are the same but for upper and lower case, letter by letter (simple case mapping).
/// Bytes that are no UTF-8 must be equal to be the same.
bool equalIgnoringCase(std::string_view left, std::string_view right);

/// The order of two UTF-8 texts when upper and lower case count the same: letter by letter, by the letters'
/// numbers in Unicode. Bytes that are no UTF-8 are compared as they are.
std::strong_ordering compareIgnoringCase(std::string_view left, std::string_view right);

/// Whether a UTF-8 text holds another one when upper and lower case count the same, letter by letter. Every
/// text holds the empty one. Bytes that are no UTF-8 must be there as they are.
bool containsIgnoringCase(std::string_view text, std::string_view part);

}  // namespace platform
