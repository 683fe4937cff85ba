// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/foundation/Error.h"
#include "settings/program/CommandLine.h"

namespace settings {

/// The command "explore": uses the bundle at random, on phones in processes and temporary roots of their own,
/// and prints what it came to. 0 when nothing was found, 1 when something was, which is then in a recording;
/// an error is why it could not begin or go on. The root that the command line names is only read. Main
/// thread, before there is another one.
platform::Result<int> runExplore(const CommandLine& line, const std::string& resources);

}  // namespace settings
