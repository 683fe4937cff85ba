// SPDX-License-Identifier: MIT
#pragma once

#include <sdbus-c++/sdbus-c++.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Error.h"

namespace device {

/// A saved connection as the network manager tells it: groups of settings by their names.
using ConnectionSettings = std::map<std::string, std::map<std::string, sdbus::Variant>>;

/// A Wi-Fi network's name as a text; different names give different texts.
std::string ssidText(const std::vector<std::uint8_t>& bytes);

/// The name of the network that the connection is for; empty for a connection of another kind. The error
/// completes a sentence about a Wi-Fi connection that has no such name.
platform::Result<std::optional<std::string>> wirelessSSID(const ConnectionSettings& settings);

}  // namespace device
