// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"
#include "settings/Application.h"
#include "settings/CommandFields.h"

namespace settings {

/// What the user does to the screen in front outside its rows, and to what is presented above it. A button
/// that is not there is an error that changes nothing.

/// Presses the bar button "item" (0 the outermost) of "side", "left" or "right".
platform::Result<void> pressBarButton(Application& application, const CommandFields& fields);
/// Presses the back button. The first screen of a navigation controller has none.
platform::Result<void> goBack(Application& application, const CommandFields& fields);
/// Presses the button titled "action" of the alert or sheet.
platform::Result<void> chooseAction(Application& application, const CommandFields& fields);
/// Ends the composer with "result".
platform::Result<void> endComposer(Application& application, const CommandFields& fields);
/// Opens link "item" of the screen.
platform::Result<void> openLink(Application& application, const CommandFields& fields);
/// Selects the time picker's row "row".
platform::Result<void> selectTimeRow(Application& application, const CommandFields& fields);
/// Moves the time picker to "time".
platform::Result<void> moveTimePicker(Application& application, const CommandFields& fields);
/// Picks the tone "identifier", null for none.
platform::Result<void> selectTone(Application& application, const CommandFields& fields);

}  // namespace settings
