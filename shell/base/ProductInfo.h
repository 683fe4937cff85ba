// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "platform/foundation/Value.h"

namespace quietrix {

/// The cached product information, nil until it was read. Main thread, like everything here.
platform::Value& productInfoDict();

/// The dictionary of "Quietrix.plist" in the plug-in's bundle, read once for the process; nil when it cannot
/// be read, and then the next call tries again.
platform::Value getProductInfoDict();

/// The device's user-interface idiom: 0 phone, 1 pad; 0 on a device that does not know.
std::int64_t UI_USER_INTERFACE_IDIOM();

/// The year shown in every copyright row: 0 until first computed. The root list computes it with each build
/// of its rows; the other screens only while it is below 1.
std::int64_t& currentYear();
/// The present year of the current calendar.
std::int64_t yearOfPresentDate();

}  // namespace quietrix
