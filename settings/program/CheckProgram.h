// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/foundation/Error.h"
#include "settings/program/CommandLine.h"

namespace settings {

/// The command "check": looks at the bundle on a phone of its own, in a directory for the time being, and
/// prints what it found. 0 without findings, 1 with some, 2 when it cannot begin, after one line on standard
/// error. The directory goes however it ends. An error is what has kept it from looking, or what the bundle
/// has made it die of. The root that the command line names is only read. Main thread.
platform::Result<int> runCheck(const CommandLine& line, const std::string& resourceDirectory,
                               const std::string& systemShell);

}  // namespace settings
