// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace platform {

/// A localisation table: the texts of one language by their keys.
using StringTable = std::map<std::string, std::string, std::less<>>;

/// Reads a table: `"key" = "value";` with comments and the escapes \" \\ \n \t \r \Uxxxx, in UTF-8 or, with a
/// byte order mark, UTF-16; or a property list whose root is a dictionary of strings. A key that comes twice
/// takes its last value. The error names the line and what was expected there; it does not know the file's
/// name.
Result<StringTable> parseStringTable(const Data& data);

}  // namespace platform
