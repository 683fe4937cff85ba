// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/uikit/UIColor.h"

namespace quietrix {

/// The blue in which times stand wherever they can be changed.
inline std::shared_ptr<platform::UIColor> editableTimeColor() {
    return platform::UIColor::colorWithRed_green_blue_alpha(0, 0.478431, 1.0, 1.0);
}

}  // namespace quietrix
