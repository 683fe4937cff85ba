// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "platform/foundation/Error.h"

namespace device {

/// What the network manager answered.
struct SavedNetworks {
    std::vector<std::string> names;
    /// Lines for the log: connections that were left out.
    std::vector<std::string> faults;
};

/// Asks the network manager over the system bus for its saved Wi-Fi connections, in its order. No call waits
/// beyond the deadline; connecting to a bus that is silent may, for the bus library's own 25 seconds. The
/// error is a whole sentence. Any thread.
platform::Result<SavedNetworks> askSavedConnections(std::chrono::steady_clock::time_point deadline);

}  // namespace device
