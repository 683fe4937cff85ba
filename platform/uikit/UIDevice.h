// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/uikit/Geometry.h"

namespace platform {

inline constexpr std::int64_t UIUserInterfaceIdiomPhone = 0;
inline constexpr std::int64_t UIUserInterfaceIdiomPad = 1;

/// The device that the phone's software runs on, from the installed device's facts. Without facts it is a
/// phone that does not answer for its idiom, with empty texts.
class UIDevice {
  public:
    static UIDevice currentDevice() { return {}; }

    /// Whether the device answers the question of that name ("userInterfaceIdiom" is the one that may fail).
    bool respondsToSelector(std::string_view selector) const;
    std::int64_t userInterfaceIdiom() const;
    std::string systemVersion() const;
    std::string serialNumber() const;
    std::string UDID() const;
};

/// The main screen.
class UIScreen {
  public:
    static UIScreen mainScreen() { return {}; }

    /// Pixels for each point; 2 without a device.
    double scale() const;
    /// In points: 390 by 844, on a pad 768 by 1024.
    Rect bounds() const;
};

/// The user's languages, the preferred one first; {"en"} without a device.
std::vector<std::string> preferredLanguages();

/// The user interface toolkit's own translation of a text ("Error", "Close"), from the main bundle's "UIKit"
/// table.
std::string localizedLabelFromUIKit(std::string_view key);

}  // namespace platform
