// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace device {

/// This process's time zone as the variable TZ has it: the variable itself, else the name of the machine's
/// zone, else the present distance from universal time. Main thread.
std::string timeZone();
/// Has this process live in such a zone from now on. While no other thread runs.
void setTimeZone(const std::string& zone);

}  // namespace device
