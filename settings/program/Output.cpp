// SPDX-License-Identifier: MIT
#include "settings/program/Output.h"

#include <cerrno>
#include <iostream>

#include "device/HostFile.h"

namespace settings {

platform::Result<void> printResult(std::string_view text) {
    errno = 0;
    if (std::cout << text << std::flush) return {};
    return platform::failure("The result could not be printed: " + device::host::message(errno) + ".");
}

}  // namespace settings
