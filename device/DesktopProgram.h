// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace device {

/// Whether a service hands to the desktop what is to leave the phone. Where the desktop is left alone, it is
/// as if everything had been taken over, and nothing that is told names this machine.
enum class Desktop { IsAsked, IsLeftAlone };

/// Whether there is a desktop, and the search path has that program.
bool hasDesktopProgram(const std::string& program);

/// Starts a program of the desktop with one argument and never waits for it. It runs in a session of its own,
/// with nothing of ours open but standard error. False when there is no display, or no such program in the
/// search path. `refused` is called once, later, on the main run loop, when the program ends with a failure
/// of its own (a status from 1 to 127): it has found nothing to open the argument with. Main thread.
bool startDesktopProgram(const std::string& program, const std::string& argument,
                         std::function<void()> refused);

}  // namespace device
