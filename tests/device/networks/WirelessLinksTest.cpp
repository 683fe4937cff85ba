// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <filesystem>

#include "device/networks/WirelessLinks.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using device::anyWirelessLinkIsUp;

class WirelessLinks : public testing::Test {
  protected:
    testing_support::TemporaryDirectory directory;

    void add(const std::string& name, const std::string& mark, const std::string& state) {
        std::filesystem::create_directories(directory / name);
        if (!mark.empty()) std::filesystem::create_directories(directory / (name + "/" + mark));
        testing_support::writeText(directory / (name + "/operstate"), state + "\n");
    }
};

TEST_F(WirelessLinks, wirelessInterfaceThatIsUp_isALink) {
    add("lo", "", "unknown");
    add("wlan0", "phy80211", "down");
    EXPECT_FALSE(anyWirelessLinkIsUp(directory / ""));
    add("wlan1", "wireless", "up");
    EXPECT_TRUE(anyWirelessLinkIsUp(directory / ""));
    add("wlan1", "wireless", "dormant");
    EXPECT_FALSE(anyWirelessLinkIsUp(directory / ""));
}

TEST_F(WirelessLinks, cableThatIsUp_isNone) {
    add("eth0", "", "up");
    EXPECT_FALSE(anyWirelessLinkIsUp(directory / ""));
}

TEST_F(WirelessLinks, directoryThatIsNotThere_hasNone) {
    EXPECT_FALSE(anyWirelessLinkIsUp(directory / "absent"));
}

}  // namespace
