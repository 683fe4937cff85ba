// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Error.h"

namespace device {

/// What the network manager answered.
struct SavedNetworks {
    std::vector<std::string> names;
    /// Lines for the log: connections that were left out.
    std::vector<std::string> faults;
    /// Connections that the manager has, Wi-Fi or not, and how many of them are read or left out.
    std::size_t listed = 0;
    std::size_t answered = 0;
};

/// The answers so far, for the thread that asks and for whoever waits for it no longer. Any thread.
class SavedNetworksSoFar {
  public:
    void setListed(std::size_t connections);
    /// A connection's network, empty for a connection of another kind; or the log line of one left out.
    void add(const platform::Result<std::optional<std::string>>& answer);
    SavedNetworks copy() const;

  private:
    mutable std::mutex mutex_;
    SavedNetworks networks_;
};

/// Asks the network manager over the system bus for its saved Wi-Fi connections, in its order; each answer is
/// in `soFar` as soon as it is had. No call waits beyond the deadline; connecting to a bus that is silent
/// may, for the bus library's own 25 seconds. The error, a whole sentence, says why not all was had. Any
/// thread.
platform::Result<void> askSavedConnections(std::chrono::steady_clock::time_point deadline,
                                           SavedNetworksSoFar& soFar);

}  // namespace device
