// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "device/ProgramPaths.h"
#include "platform/foundation/Error.h"
#include "settings/program/CommandLine.h"

namespace settings {

/// Answers commands on standard input and output, and writes down all that passes. The result is the
/// process's exit status, an error why it could not begin. Main thread.
platform::Result<int> record(const CommandLine& line, const std::string& resources);

/// Replays a recording on a root of its own and tells on standard output in which answer it is different
/// first: status 1. An error is why it cannot be replayed. Main thread.
platform::Result<int> replay(const CommandLine& line, const std::string& resources);

}  // namespace settings
