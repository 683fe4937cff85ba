// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/PSSwitchTableCell.h"

namespace velmora {

/// A row with an on/off switch whose colour when on is a subclass's to say. The colour is asked for whenever
/// the cell takes its row's contents or is laid out, so it follows dark mode with the next look at the row.
class VMControlTableCell : public platform::PSSwitchTableCell {
    PLATFORM_CLASS(VMControlTableCell, platform::PSSwitchTableCell)

  public:
    using PSSwitchTableCell::PSSwitchTableCell;

    /// Null, the base's answer, is the system's own green.
    virtual std::shared_ptr<platform::UIColor> switchCellOnTintColor();
    void refreshCellContentsWithSpecifier(const std::shared_ptr<platform::PSSpecifier>& specifier) override;
    void layoutSubviews() override;

  private:
    void colourSwitch();
};

}  // namespace velmora
