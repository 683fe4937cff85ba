// SPDX-License-Identifier: MIT
#include "velmora/VMControlTableCell.h"

namespace velmora {

PLATFORM_REGISTER_CELL_CLASS(VMControlTableCell)

std::shared_ptr<platform::UIColor> VMControlTableCell::switchCellOnTintColor() {
    return nullptr;
}

void VMControlTableCell::refreshCellContentsWithSpecifier(
    const std::shared_ptr<platform::PSSpecifier>& specifier) {
    PSSwitchTableCell::refreshCellContentsWithSpecifier(specifier);
    colourSwitch();
}

void VMControlTableCell::layoutSubviews() {
    PSSwitchTableCell::layoutSubviews();
    colourSwitch();
}

void VMControlTableCell::colourSwitch() {
    if (const auto toggle = switchControl()) toggle->setOnTintColor(switchCellOnTintColor());
}

}  // namespace velmora
