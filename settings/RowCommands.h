// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"
#include "settings/Application.h"
#include "settings/CommandFields.h"

namespace settings {

/// What the user does to a row of the list in front. "row" is the row's index in the row list; one out of
/// range, and a row that cannot be acted on so, are errors that change nothing.

/// Taps the row's body.
platform::Result<void> tapRow(Application& application, const CommandFields& fields);
/// Moves the row's control to "value".
platform::Result<void> setRow(Application& application, const CommandFields& fields);
/// Swipes the row and presses its delete button.
platform::Result<void> deleteRow(Application& application, const CommandFields& fields);
/// Switches the list's editing mode to "on".
platform::Result<void> editRows(Application& application, const CommandFields& fields);

}  // namespace settings
