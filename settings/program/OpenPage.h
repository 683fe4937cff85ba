// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"
#include "settings/program/CommandLine.h"

namespace settings {

/// The command "open": finds this user's server on the root that the command line names, or starts one that
/// goes on without this program and ends when nobody has had a page open for ten minutes; prints its address,
/// and has the desktop's browser show it where there is a desktop. A server on the usual root is the service
/// manager's, if that listens for it. The browser is given a file of the user's own and never the address,
/// which others could read. Of two that run at once the second finds what the first has started. It waits no
/// longer than the command line says for each of those that it depends on: another such command, the service
/// manager, the server.
platform::Result<void> openPage(const CommandLine& line);

}  // namespace settings
