// SPDX-License-Identifier: MIT
#pragma once

#include "settings/application/Application.h"
#include "settings/commands/CommandFields.h"
#include "settings/commands/Refusal.h"

namespace settings {

/// What happens to the phone as a whole, whatever screen is on top.

/// Posts the Darwin notification "name", as another process would.
Outcome<void> postNotification(Application& application, const CommandFields& fields);
/// Switches dark mode to "on" and has every shown row drawn anew in its colours.
Outcome<void> switchDarkMode(Application& application, const CommandFields& fields);
/// Moves the virtual clock by "seconds"; an error with the system clock.
Outcome<void> advanceClock(Application& application, const CommandFields& fields);
/// Leaves the bundle's screens and opens its first one anew.
Outcome<void> reopenBundle(Application& application, const CommandFields& fields);

}  // namespace settings
