// SPDX-License-Identifier: MIT
#include "device/UniversalTime.h"

#include <array>

namespace device {

std::string universalTimeText(std::time_t moment, const char* pattern) {
    std::tm parts{};
    gmtime_r(&moment, &parts);
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), pattern, &parts)};
}

}  // namespace device
