// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace quietrix {

/// Where the phone keeps the profiles.
inline constexpr std::string_view profilesPath =
    "/var/mobile/Library/Preferences/com.velmora.quietrix.profiles.plist";

}  // namespace quietrix
