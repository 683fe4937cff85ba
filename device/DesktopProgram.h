// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace device {

/// Starts a program of the desktop with one argument and never waits for it. It runs in a session of its own,
/// with nothing of ours open but standard error. False when there is no display, or no such program in the
/// search path. Main thread.
bool startDesktopProgram(const std::string& program, const std::string& argument);

}  // namespace device
