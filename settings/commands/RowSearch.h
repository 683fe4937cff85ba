// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Value.h"
#include "settings/application/Application.h"
#include "settings/commands/CommandFields.h"
#include "settings/commands/Refusal.h"

namespace settings {

/// Which rows of the screen have a name that holds the "text", whatever the case: an array "found", in the
/// order of the list, of each row's "key", "index" and "name", and its "row" in its section (nil for a group
/// row). It goes by the names that the rows were given, so that no cell is made. A text that is missing or
/// empty, and a screen without rows, are errors. Main thread.
Outcome<platform::Dictionary> findRows(Application& application, const CommandFields& fields);

}  // namespace settings
