// SPDX-License-Identifier: MIT
#include "device/networks/WirelessLinks.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace device {

namespace {

namespace fs = std::filesystem;

bool isWireless(const fs::path& interface) {
    std::error_code error;
    return fs::exists(interface / "phy80211", error) || fs::exists(interface / "wireless", error);
}

bool isUp(const fs::path& interface) {
    std::ifstream file(interface / "operstate");
    std::string state;
    return static_cast<bool>(file >> state) && state == "up";
}

}  // namespace

bool anyWirelessLinkIsUp(const std::string& interfaces) {
    std::error_code error;
    // An interface may go away at any moment: then it is not up.
    for (fs::directory_iterator each(interfaces, error), end; !error && each != end; each.increment(error)) {
        if (isWireless(each->path()) && isUp(each->path())) return true;
    }
    return false;
}

}  // namespace device
