// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace device {

/// Where the kernel lists the machine's network interfaces, a directory each.
inline constexpr const char* kernelInterfaces = "/sys/class/net";

/// Whether a wireless interface of such a directory carries a link, which it does when it is associated with
/// a network. False for a directory that is not there. A few small files are read; any thread.
bool anyWirelessLinkIsUp(const std::string& interfaces);

}  // namespace device
