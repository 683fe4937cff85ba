// SPDX-License-Identifier: MIT
// A saved connection as a network manager could tell it: the groups and settings that matter and others, with
// values of the types that they should have and of others.
#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "device/networks/WirelessSettings.h"
#include "platform/foundation/Unicode.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

/// The bytes that a text stands for: those of its escapes, if it has any.
std::vector<std::uint8_t> unescaped(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::vector<std::uint8_t> bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::size_t high = at + 3 < text.size() ? digits.find(text[at + 2]) : std::string_view::npos;
        const std::size_t low = at + 3 < text.size() ? digits.find(text[at + 3]) : std::string_view::npos;
        if (text.substr(at, 2) == "\\x" && high != std::string_view::npos && low != std::string_view::npos) {
            bytes.push_back(static_cast<std::uint8_t>(high * 16 + low));
            at += 3;
        } else {
            bytes.push_back(static_cast<std::uint8_t>(text[at]));
        }
    }
    return bytes;
}

sdbus::Variant value(FuzzedDataProvider& input) {
    switch (input.ConsumeIntegralInRange(0, 6)) {
        case 0:
            return std::string("802-11-wireless");
        case 1:
            return std::string(input.ConsumeBool() ? "vpn" : "802-3-ethernet");
        case 2:
            return input.ConsumeIntegral<std::int32_t>();
        case 3:
            return input.ConsumeBool();
        case 4:
            return std::vector<std::string>{"a"};
        case 5:
            return sdbus::Variant();
        default:
            return input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegralInRange<std::size_t>(0, 64));
    }
}

device::ConnectionSettings settings(FuzzedDataProvider& input) {
    constexpr std::array groups{"connection", "802-11-wireless", "ipv4"};
    constexpr std::array names{"type", "ssid", "id"};
    device::ConnectionSettings settings;
    for (int i = 0; i < 6 && input.remaining_bytes() > 0; ++i) {
        const char* group = input.PickValueInArray(groups);
        const char* name = input.PickValueInArray(names);
        settings[group].insert_or_assign(name, value(input));
    }
    return settings;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> bytes(data, data + size);
    const std::string text = device::ssidText(bytes);
    require(!platform::firstInvalidUTF8(text));
    require(unescaped(text) == bytes);

    FuzzedDataProvider input(data, size);
    const auto ssid = device::wirelessSSID(settings(input));
    if (!ssid) {
        require(!ssid.error().localizedDescription.empty());
    } else if (*ssid) {
        require(!(*ssid)->empty() && !platform::firstInvalidUTF8(**ssid));
    }
    return 0;
}
