// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace device {

/// How a process ended, from what waitpid() says of it: "signal 6 (Aborted)" or "exit status 1". Any thread.
std::string processEndText(int waitStatus);

}  // namespace device
