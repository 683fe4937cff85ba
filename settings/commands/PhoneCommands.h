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

/// Posts "name" in the centre of this process, as one of its screens would.
Outcome<void> postLocally(Application& application, const CommandFields& fields);
/// Ends the phone's process of the name "process".
Outcome<void> killProcess(Application& application, const CommandFields& fields);
/// "files": what the bundle has stored, and the end of the system's log.
Outcome<platform::Dictionary> lookAtFiles(Application& application, const CommandFields& fields);
/// Changes the device by the keys and values of "set", all or nothing; "pathEnded" when the screens could not
/// be opened anew up to the last.
Outcome<platform::Dictionary> changeDevice(Application& application, const CommandFields& fields);
/// Begins the fault "kind", ends it with "on" false, or ends all with "clear".
Outcome<void> changeFaults(Application& application, const CommandFields& fields);

}  // namespace settings
