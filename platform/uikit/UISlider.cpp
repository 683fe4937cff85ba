// SPDX-License-Identifier: MIT
#include "platform/uikit/UISlider.h"

#include <algorithm>
#include <cmath>

namespace platform {

PLATFORM_REGISTER_CLASS(UISlider)

void UISlider::setRange(double minimum, double maximum) {
    if (std::isnan(minimum) || std::isnan(maximum)) return;
    minimum_ = minimum;
    maximum_ = std::max(minimum, maximum);
    setValue(value_);
}

void UISlider::setValue(double value) {
    if (std::isnan(value)) return;
    value_ = std::clamp(value, minimum_, maximum_);
}

}  // namespace platform
