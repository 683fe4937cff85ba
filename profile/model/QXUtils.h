// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/DateFormatter.h"

namespace quietrix {

/// Small questions about the phone that several screens ask. Main thread.
class QXUtils {
  public:
    /// Whether the device's system is of version 9 (11) or later; no for a version that is not a number.
    static bool isIOS9();
    static bool isIOS11();
    static bool isDarkModeEnabled();

    /// The one formatter of the process. Its pattern is whatever its last user left: set it before every use.
    static platform::DateFormatter& dateFormatter();
};

}  // namespace quietrix
