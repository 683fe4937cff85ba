// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "device/networks/SavedConnections.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/NetworkSource.h"

namespace device {

/// The Wi-Fi networks among the connections saved by the machine's network manager, in its order.
///
/// The manager is asked on a thread of its own, and given up when it has not answered in time: neither a bus
/// that is silent nor a manager that hangs holds up the main loop, however many connections are left to ask
/// for. What it has answered by then counts; one log line says how much that is, or that it is nothing.
class NetworkManagerNetworks : public platform::NetworkSource {
  public:
    using Clock = std::chrono::steady_clock;
    /// Asks for the networks; runs on another thread, and may outlive whoever asked. After the deadline
    /// nobody looks at the answers any more.
    using Question = std::function<platform::Result<void>(Clock::time_point deadline, SavedNetworksSoFar&)>;

    /// Of the 2 seconds that a source may take, the rest is left for a busy machine.
    static constexpr std::chrono::milliseconds patience{1500};

    /// Asks over the system bus.
    NetworkManagerNetworks();
    NetworkManagerNetworks(Question question, std::chrono::milliseconds limit);

    std::vector<std::string> knownSSIDs() override;
    /// Whether the machine is, by what its kernel says: the manager may take long to answer.
    bool isConnected() override;

  private:
    Question question_;
    std::chrono::milliseconds patience_;
};

}  // namespace device
