// SPDX-License-Identifier: MIT
#include "device/networks/NetworkManagerNetworks.h"

#include <signal.h>

#include <exception>
#include <future>
#include <memory>
#include <system_error>
#include <thread>
#include <utility>

#include "device/networks/WirelessLinks.h"
#include "platform/foundation/LogSink.h"

namespace device {

namespace {

using Outcome = platform::Result<void>;

/// Why the question could not ask for all there is. An exception ends here, in the thread it was thrown in:
/// its text may be shared between threads in ways that no tool of ours can check.
Outcome outcomeOf(const NetworkManagerNetworks::Question& question,
                  NetworkManagerNetworks::Clock::time_point deadline, SavedNetworksSoFar& soFar) {
    try {
        return question(deadline, soFar);
    } catch (const std::exception& error) {
        return platform::failure(error.what());
    }
}

/// The reason why not all was answered in time. The answers are shared: who comes too late still adds some.
Outcome ask(const NetworkManagerNetworks::Question& question, std::chrono::milliseconds patience,
            const std::shared_ptr<SavedNetworksSoFar>& soFar) {
    const auto deadline = NetworkManagerNetworks::Clock::now() + patience;
    std::packaged_task<Outcome()> task(
        [question, deadline, soFar] { return outcomeOf(question, deadline, *soFar); });
    std::future<Outcome> outcome = task.get_future();
    try {
        std::thread([task = std::move(task)]() mutable {
            sigset_t all;
            sigfillset(&all);
            pthread_sigmask(SIG_SETMASK, &all, nullptr);
            task();
        }).detach();
    } catch (const std::system_error& error) {
        return platform::failure(error.what());
    }
    if (outcome.wait_until(deadline) != std::future_status::ready)
        return platform::failure("It did not answer in time.");
    return outcome.get();
}

}  // namespace

NetworkManagerNetworks::NetworkManagerNetworks() : NetworkManagerNetworks(askSavedConnections, patience) {}

NetworkManagerNetworks::NetworkManagerNetworks(Question question, std::chrono::milliseconds limit)
    : question_(std::move(question)), patience_(limit) {}

std::vector<std::string> NetworkManagerNetworks::knownSSIDs() {
    const auto soFar = std::make_shared<SavedNetworksSoFar>();
    const Outcome outcome = ask(question_, patience_, soFar);
    SavedNetworks networks = soFar->copy();
    for (const std::string& fault : networks.faults) platform::log(fault);
    if (!outcome && networks.listed == 0) {
        platform::log("The network manager's Wi-Fi networks could not be had: " +
                      outcome.error().localizedDescription);
    } else if (!outcome && networks.answered < networks.listed) {
        platform::log("The network manager's Wi-Fi networks are incomplete, " +
                      std::to_string(networks.answered) + " of " + std::to_string(networks.listed) +
                      " saved connections were read: " + outcome.error().localizedDescription);
    }
    return std::move(networks.names);
}

bool NetworkManagerNetworks::isConnected() {
    return anyWirelessLinkIsUp(kernelInterfaces);
}

}  // namespace device
