// SPDX-License-Identifier: MIT
#include "profile/model/QXUtils.h"

#include <charconv>
#include <string>

#include "platform/foundation/Device.h"

namespace quietrix {

namespace {

// Compared as a number: as a text, "9.3" would come after "11.4".
int majorSystemVersion() {
    const auto& facts = platform::Device::current().facts;
    if (!facts) return 0;
    const std::string version = facts->systemVersion();
    int major = 0;
    std::from_chars(version.data(), version.data() + version.size(), major);
    return major;
}

}  // namespace

bool QXUtils::isIOS9() {
    return majorSystemVersion() >= 9;
}

bool QXUtils::isIOS11() {
    return majorSystemVersion() >= 11;
}

bool QXUtils::isDarkModeEnabled() {
    const auto& facts = platform::Device::current().facts;
    return facts && facts->isDarkMode();
}

platform::DateFormatter& QXUtils::dateFormatter() {
    static platform::DateFormatter formatter;
    return formatter;
}

}  // namespace quietrix
