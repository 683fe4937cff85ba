// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace device {

/// Starts a program of the desktop with one argument and never waits for it. It runs in a session of its own,
/// with nothing of ours open but standard error. False when there is no display, or no such program in the
/// search path. `refused` is called once, later, on the main run loop, when the program ends with a failure
/// of its own (a status from 1 to 127): it has found nothing to open the argument with. Main thread.
bool startDesktopProgram(const std::string& program, const std::string& argument,
                         std::function<void()> refused);

}  // namespace device
