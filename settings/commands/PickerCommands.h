// SPDX-License-Identifier: MIT
#pragma once

#include "settings/application/Application.h"
#include "settings/commands/CommandFields.h"
#include "settings/commands/Refusal.h"

namespace settings {

/// What the user does to the picker of the screen on top. On a screen without that picker each is an error
/// that changes nothing.

/// Selects the time picker's row "row", the time that the wheel moves from then on.
Outcome<void> pickTimeRow(Application& application, const CommandFields& fields);
/// Moves the time picker's wheel to "time", a time of day as "5:00 PM".
Outcome<void> pickTime(Application& application, const CommandFields& fields);
/// Picks the tone "identifier"; null is the "None" entry.
Outcome<void> pickTone(Application& application, const CommandFields& fields);

}  // namespace settings
