// SPDX-License-Identifier: MIT
#pragma once

#include "settings/application/Application.h"
#include "settings/commands/CommandFields.h"
#include "settings/commands/Refusal.h"

namespace settings {

/// What the user does to a row of the list on top. "row" is the row's index in the row list, "key" its key;
/// with both the key decides. An index out of range, and a row that cannot be acted on so, are errors that
/// change nothing; a key that no row has is stale.

/// Taps the row's body.
Outcome<void> tapRow(Application& application, const CommandFields& fields);
/// Moves the row's control to "value".
Outcome<void> setRow(Application& application, const CommandFields& fields);
/// Swipes the row and presses its delete button.
Outcome<void> deleteRow(Application& application, const CommandFields& fields);
/// Switches the list's editing mode to "on".
Outcome<void> editRows(Application& application, const CommandFields& fields);

}  // namespace settings
