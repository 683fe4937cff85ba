// SPDX-License-Identifier: MIT
#include "device/TimeZone.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <system_error>

namespace device {

namespace {

constexpr const char* machinesZone = "/etc/localtime";
constexpr std::string_view zoneFolder = "/zoneinfo/";

/// As POSIX writes it, where what is east of universal time is negative: "<+0130>-01:30".
std::string distanceText() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    const long minutes = std::abs(local.tm_gmtoff) / 60;
    const bool isEast = local.tm_gmtoff >= 0;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "<%c%02ld%02ld>%c%02ld:%02ld", isEast ? '+' : '-', minutes / 60,
                  minutes % 60, isEast ? '-' : '+', minutes / 60, minutes % 60);
    return text.data();
}

}  // namespace

std::string timeZone() {
    if (const char* variable = std::getenv("TZ"); variable && *variable) return variable;
    std::error_code error;
    const std::string file = std::filesystem::read_symlink(machinesZone, error).string();
    if (const std::size_t folder = file.find(zoneFolder); !error && folder != std::string::npos)
        return file.substr(folder + zoneFolder.size());
    return distanceText();
}

void setTimeZone(const std::string& zone) {
    setenv("TZ", zone.c_str(), 1);
    tzset();
}

}  // namespace device
