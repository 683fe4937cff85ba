// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"
#include "settings/Application.h"
#include "settings/CommandFields.h"

namespace settings {

/// What happens to the phone as a whole, whatever screen is in front.

/// Posts the Darwin notification "name", as another process would.
platform::Result<void> postNotification(Application& application, const CommandFields& fields);
/// Switches dark mode to "on" and has every shown row drawn anew in its colours.
platform::Result<void> switchDarkMode(Application& application, const CommandFields& fields);
/// Moves the virtual clock by "seconds"; an error with the system clock.
platform::Result<void> advanceClock(Application& application, const CommandFields& fields);
/// Leaves the bundle's screens and opens its first one anew.
platform::Result<void> reopenBundle(Application& application, const CommandFields& fields);

}  // namespace settings
