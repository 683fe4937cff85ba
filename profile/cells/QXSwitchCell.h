// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "velmora/VMControlTableCell.h"

namespace quietrix {

/// An on/off row whose switch takes the product's colour when on: in dark mode translucent white, otherwise
/// the navigation bar's pattern. Asked for anew each time, so it follows dark mode.
class QXSwitchCell : public velmora::VMControlTableCell {
    PLATFORM_CLASS(QXSwitchCell, velmora::VMControlTableCell)

  public:
    using VMControlTableCell::VMControlTableCell;

    std::shared_ptr<platform::UIColor> switchCellOnTintColor() override;
};

}  // namespace quietrix
