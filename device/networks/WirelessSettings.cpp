// SPDX-License-Identifier: MIT
#include "device/networks/WirelessSettings.h"

#include <string_view>

#include "device/EscapedText.h"

namespace device {

namespace {

constexpr const char* wirelessType = "802-11-wireless";

/// Empty when there is no such setting, or one of another type.
template <class T>
std::optional<T> setting(const ConnectionSettings& settings, const char* group, const char* name) {
    const auto found = settings.find(group);
    if (found == settings.end()) return std::nullopt;
    const auto value = found->second.find(name);
    if (value == found->second.end() || !value->second.containsValueOfType<T>()) return std::nullopt;
    return value->second.get<T>();
}

}  // namespace

std::string ssidText(const std::vector<std::uint8_t>& bytes) {
    return escapedText({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

platform::Result<std::optional<std::string>> wirelessSSID(const ConnectionSettings& settings) {
    try {
        if (setting<std::string>(settings, "connection", "type") != wirelessType) return std::nullopt;
        const auto bytes = setting<std::vector<std::uint8_t>>(settings, wirelessType, "ssid");
        if (!bytes || bytes->empty()) return platform::failure("has no network's name");
        return ssidText(*bytes);
    } catch (const sdbus::Error& error) {
        return platform::failure("cannot be understood: " + error.getMessage());
    }
}

}  // namespace device
