// SPDX-License-Identifier: MIT
#include "profile/cells/QXSwitchCell.h"

#include "profile/model/QXUtils.h"
#include "shell/base/NavBarColor.h"

namespace quietrix {

PLATFORM_REGISTER_CELL_CLASS(QXSwitchCell)

std::shared_ptr<platform::UIColor> QXSwitchCell::switchCellOnTintColor() {
    if (QXUtils::isDarkModeEnabled()) return platform::UIColor::whiteColor()->colorWithAlphaComponent(0.6);
    return navBarPatternColor(getClass());
}

}  // namespace quietrix
