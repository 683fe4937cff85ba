// SPDX-License-Identifier: MIT
#include "device/networks/SavedConnections.h"

#include <sdbus-c++/sdbus-c++.h>

#include <memory>
#include <optional>
#include <stdexcept>

#include "device/networks/WirelessSettings.h"

namespace device {

namespace {

using Deadline = std::chrono::steady_clock::time_point;

constexpr const char* service = "org.freedesktop.NetworkManager";
constexpr const char* settingsObject = "/org/freedesktop/NetworkManager/Settings";
constexpr const char* settingsInterface = "org.freedesktop.NetworkManager.Settings";
constexpr const char* connectionInterface = "org.freedesktop.NetworkManager.Settings.Connection";

struct TimeIsUp : std::runtime_error {
    TimeIsUp() : std::runtime_error("It did not answer in time.") {}
};

/// For the bus library, for which 0 stands for a time limit of its own.
std::chrono::microseconds timeLeft(Deadline deadline) {
    const auto now = std::chrono::steady_clock::now();
    if (deadline <= now) throw TimeIsUp();
    return std::chrono::ceil<std::chrono::microseconds>(deadline - now);
}

template <class T>
T call(sdbus::IConnection& bus, const std::string& object, const char* interface, const char* method,
       Deadline deadline) {
    T result;
    const auto proxy = sdbus::createProxy(bus, service, object);
    proxy->callMethod(method).onInterface(interface).withTimeout(timeLeft(deadline)).storeResultsTo(result);
    return result;
}

platform::Result<std::optional<std::string>> askConnection(sdbus::IConnection& bus, const std::string& path,
                                                           Deadline deadline) {
    const auto leftOut = [&](const std::string& why) {
        return platform::failure("The saved connection \"" + path + "\" " + why);
    };
    try {
        auto ssid =
            wirelessSSID(call<ConnectionSettings>(bus, path, connectionInterface, "GetSettings", deadline));
        if (!ssid) return leftOut(ssid.error().localizedDescription + ".");
        return ssid;
    } catch (const sdbus::Error& error) {
        // One that was removed meanwhile, or that belongs to somebody else.
        timeLeft(deadline);
        return leftOut("could not be read: " + error.getMessage());
    }
}

}  // namespace

void SavedNetworksSoFar::setListed(std::size_t connections) {
    const std::scoped_lock lock(mutex_);
    networks_.listed = connections;
}

void SavedNetworksSoFar::add(const platform::Result<std::optional<std::string>>& answer) {
    const std::scoped_lock lock(mutex_);
    ++networks_.answered;
    if (!answer) {
        networks_.faults.push_back(answer.error().localizedDescription);
    } else if (*answer) {
        networks_.names.push_back(**answer);
    }
}

SavedNetworks SavedNetworksSoFar::copy() const {
    const std::scoped_lock lock(mutex_);
    return networks_;
}

platform::Result<void> askSavedConnections(Deadline deadline, SavedNetworksSoFar& soFar) {
    try {
        timeLeft(deadline);
        const auto bus = sdbus::createSystemBusConnection();
        const auto paths = call<std::vector<sdbus::ObjectPath>>(*bus, settingsObject, settingsInterface,
                                                                "ListConnections", deadline);
        soFar.setListed(paths.size());
        for (const auto& path : paths) soFar.add(askConnection(*bus, path, deadline));
        return {};
    } catch (const std::exception& error) {
        return platform::failure(error.what());
    }
}

}  // namespace device
