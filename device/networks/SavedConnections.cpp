// SPDX-License-Identifier: MIT
#include "device/networks/SavedConnections.h"

#include <sdbus-c++/sdbus-c++.h>

#include <memory>
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

void addConnection(sdbus::IConnection& bus, const std::string& path, Deadline deadline,
                   SavedNetworks& networks) {
    const auto leaveOut = [&](const std::string& why) {
        networks.faults.push_back("The saved connection \"" + path + "\" " + why);
    };
    try {
        const auto ssid =
            wirelessSSID(call<ConnectionSettings>(bus, path, connectionInterface, "GetSettings", deadline));
        if (!ssid) {
            leaveOut(ssid.error().localizedDescription + ".");
        } else if (*ssid) {
            networks.names.push_back(**ssid);
        }
    } catch (const sdbus::Error& error) {
        // One that was removed meanwhile, or that belongs to somebody else.
        timeLeft(deadline);
        leaveOut("could not be read: " + error.getMessage());
    }
}

}  // namespace

platform::Result<SavedNetworks> askSavedConnections(Deadline deadline) {
    try {
        timeLeft(deadline);
        const auto bus = sdbus::createSystemBusConnection();
        SavedNetworks networks;
        for (const auto& path : call<std::vector<sdbus::ObjectPath>>(*bus, settingsObject, settingsInterface,
                                                                     "ListConnections", deadline)) {
            addConnection(*bus, path, deadline, networks);
        }
        return networks;
    } catch (const std::exception& error) {
        return platform::failure(error.what());
    }
}

}  // namespace device
