// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "platform/foundation/Error.h"

namespace settings {

/// Prints what a program has found to standard output. The error, a sentence, says why not all that was
/// printed so far has got there.
platform::Result<void> printResult(std::string_view text);

}  // namespace settings
