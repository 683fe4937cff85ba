// SPDX-License-Identifier: MIT
#include "device/ProcessEnd.h"

#include <sys/wait.h>

#include <cstring>

namespace device {

std::string processEndText(int waitStatus) {
    if (!WIFSIGNALED(waitStatus)) return "exit status " + std::to_string(WEXITSTATUS(waitStatus));
    const int number = WTERMSIG(waitStatus);
    const char* name = sigdescr_np(number);
    return "signal " + std::to_string(number) + (name ? " (" + std::string(name) + ")" : "");
}

}  // namespace device
