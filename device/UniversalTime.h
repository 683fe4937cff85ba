// SPDX-License-Identifier: MIT
#pragma once

#include <ctime>
#include <string>

namespace device {

/// The moment in universal time, as names of files and lines of logs have it. `pattern` is strftime()'s, for
/// a text of 1 to 63 bytes. Any thread.
std::string universalTimeText(std::time_t moment, const char* pattern);

}  // namespace device
