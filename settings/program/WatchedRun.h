// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "device/ProgramPaths.h"
#include "platform/foundation/Error.h"
#include "settings/application/Application.h"
#include "settings/program/CommandLine.h"
#include "settings/program/PhoneSetup.h"

namespace settings {

/// "serve --watch": keeps the address and has programs serve there, one after another, with "--watched". Ends
/// as Watcher::run() does. Main thread; sets up no phone.
platform::Result<void> watchPrograms(const CommandLine& line, const device::ProgramPaths& paths);

/// "serve --watched": serves for the watcher that has started this program, on the socket that it was given,
/// and goes on where the program before it was. The application has been started. The result is the process's
/// exit status. Main thread.
int serveWatched(Application& application, PhoneSetup& phone, const std::string& pageDirectory,
                 const std::string& rootDirectory);

}  // namespace settings
