// SPDX-License-Identifier: MIT
#include "platform/uikit/UIDatePicker.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UIDatePicker)

void UIDatePicker::setDate_animated(std::optional<Date> date, bool /*animated*/) {
    date_ = date;
}

bool UIDatePicker::userChoseDate(Date date) {
    if (!isEnabled()) return false;
    date_ = date;
    sendActionsForControlEvents(UIControlEventValueChanged);
    return true;
}

}  // namespace platform
