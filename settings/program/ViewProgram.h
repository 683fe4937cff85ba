// SPDX-License-Identifier: MIT
#pragma once

#include "device/ProgramPaths.h"
#include "platform/foundation/Error.h"
#include "settings/program/CommandLine.h"

namespace settings {

/// Serves the page with a recording in it until a signal asks it to end. Opens no bundle and needs no root.
/// The error is why the recording cannot be shown. Main thread.
platform::Result<void> runView(const CommandLine& line, const device::ProgramPaths& paths);

}  // namespace settings
