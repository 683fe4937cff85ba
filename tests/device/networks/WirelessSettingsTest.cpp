// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "device/networks/WirelessSettings.h"

namespace {

using device::ConnectionSettings;
using device::wirelessSSID;
using Bytes = std::vector<std::uint8_t>;

ConnectionSettings wireless(const sdbus::Variant& ssid) {
    return {{"connection", {{"type", std::string("802-11-wireless")}}},
            {"802-11-wireless", {{"ssid", ssid}}}};
}

TEST(WirelessSettings, wirelessConnection_hasItsNetworksName) {
    EXPECT_EQ(wirelessSSID(wireless(Bytes{'H', 'o', 'm', 'e'})).value(), "Home");
    EXPECT_EQ(wirelessSSID(wireless(Bytes{'a', 0xFF})).value(), "a\\xFF");
}

TEST(WirelessSettings, otherConnection_hasNone) {
    ConnectionSettings settings = wireless(Bytes{'a'});
    settings["connection"]["type"] = std::string("vpn");
    EXPECT_EQ(wirelessSSID(settings).value(), std::nullopt);
    settings["connection"]["type"] = std::int32_t{1};
    EXPECT_EQ(wirelessSSID(settings).value(), std::nullopt);
    EXPECT_EQ(wirelessSSID({}).value(), std::nullopt);
}

TEST(WirelessSettings, nameThatIsMissingOrOfAnotherType_isAnError) {
    EXPECT_FALSE(wirelessSSID(wireless(Bytes{})));
    EXPECT_FALSE(wirelessSSID(wireless(std::string("Home"))));
    EXPECT_FALSE(wirelessSSID(wireless(sdbus::Variant())));
    EXPECT_FALSE(wirelessSSID({{"connection", {{"type", std::string("802-11-wireless")}}}}));
}

}  // namespace
