// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace platform {

/// The Wi-Fi networks that the phone remembers. Main thread.
class NetworkSource {
  public:
    virtual ~NetworkSource() = default;

    /// Their names in the order of whoever keeps them, read anew at each call; one name may come twice. Valid
    /// UTF-8: other bytes come escaped, and different names stay different. Empty, with a log line, when they
    /// cannot be had; never waits for longer than 2 seconds.
    virtual std::vector<std::string> knownSSIDs() = 0;
    /// Whether the phone is on a Wi-Fi network now. Asked with every look at the screen: answers at once and
    /// logs nothing.
    virtual bool isConnected() = 0;
};

}  // namespace platform
