// SPDX-License-Identifier: MIT
#pragma once

#include "settings/application/Application.h"
#include "settings/commands/CommandFields.h"
#include "settings/commands/Refusal.h"

namespace settings {

/// What the user does to the screen on top outside its rows, and to what is presented above it. A button
/// that is not there is an error that changes nothing.

/// Presses the bar button "item" (0 the outermost) of "side", "left" or "right".
Outcome<void> pressBarButton(Application& application, const CommandFields& fields);
/// Presses the back button. The first screen of a navigation controller has none.
Outcome<void> goBack(Application& application, const CommandFields& fields);
/// Presses the button titled "action" of the alert or sheet.
Outcome<void> chooseAction(Application& application, const CommandFields& fields);
/// Ends the composer with "result".
Outcome<void> endComposer(Application& application, const CommandFields& fields);
/// Opens link "item" of the screen.
Outcome<void> openLink(Application& application, const CommandFields& fields);

}  // namespace settings
