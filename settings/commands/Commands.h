// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "platform/foundation/Value.h"
#include "settings/application/Application.h"
#include "settings/commands/CommandFields.h"
#include "settings/commands/Refusal.h"

namespace settings {

/// Does what the named command says, as the user's finger would. An error changes nothing. While an alert, a
/// sheet or a composer is presented, most commands are errors. "wait" is not among them: what it waits for
/// depends on the session. What comes back are the fields that this answer has beside those of every answer.
/// Main thread; not from within a task of the run loop.
Outcome<platform::Dictionary> performCommand(Application& application, std::string_view name,
                                             const CommandFields& fields);

/// Whether there is a command of that name here.
bool isCommand(std::string_view name);

}  // namespace settings
