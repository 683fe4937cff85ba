// SPDX-License-Identifier: MIT
#pragma once

#include "settings/commands/CommandFields.h"
#include "settings/commands/Refusal.h"

namespace settings {

/// Checks that the command meets what its sender had before him: "screen" names the screen on top (the one
/// beneath, while something is presented), "presented" what is presented above it. Either may be missing.
/// Main thread.
Outcome<void> checkAim(const CommandFields& fields);

}  // namespace settings
