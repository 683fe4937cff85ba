// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/Object.h"
#include "platform/foundation/Value.h"

namespace quietrix {

/// The Wi-Fi networks that the phone remembers, as the screens offer them. Main thread.
class QXWiFiManager : public platform::Object {
    PLATFORM_CLASS(QXWiFiManager, platform::Object)

  public:
    /// The one manager of the process.
    static std::shared_ptr<QXWiFiManager> sharedManager();

    /// An array of dictionaries, each with the network's name under "SSID", in the phone's order. Empty,
    /// never nil, on a phone without networks.
    platform::Value knownNetworks() const;
};

}  // namespace quietrix
