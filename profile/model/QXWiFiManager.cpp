// SPDX-License-Identifier: MIT
#include "profile/model/QXWiFiManager.h"

#include <utility>

#include "platform/foundation/Device.h"

namespace quietrix {

PLATFORM_REGISTER_CLASS(QXWiFiManager)

std::shared_ptr<QXWiFiManager> QXWiFiManager::sharedManager() {
    static const auto manager = std::make_shared<QXWiFiManager>();
    return manager;
}

platform::Value QXWiFiManager::knownNetworks() const {
    platform::Array networks;
    if (const auto& source = platform::Device::current().networks) {
        for (auto& ssid : source->knownSSIDs())
            networks.emplace_back(platform::Dictionary{{"SSID", std::move(ssid)}});
    }
    return networks;
}

}  // namespace quietrix
