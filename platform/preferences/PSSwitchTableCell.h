// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/PSControlTableCell.h"
#include "platform/uikit/UISwitch.h"

namespace platform {

/// An on/off row. The switch, at the right end, shows the row's value read as a truth.
class PSSwitchTableCell : public PSControlTableCell {
    PLATFORM_CLASS(PSSwitchTableCell, PSControlTableCell)

  public:
    PSSwitchTableCell(std::int64_t style, std::string reuseIdentifier,
                      std::shared_ptr<PSSpecifier> specifier);

    std::shared_ptr<UISwitch> switchControl() const;
    /// Moves the switch without writing anything back.
    void setOn(bool on);
    /// Without a getter the switch stays as it is.
    void refreshCellContentsWithSpecifier(const std::shared_ptr<PSSpecifier>& specifier) override;
    Value controlValue() const override;
    /// A boolean.
    Result<void> userMovedControl(const Value& value) override;
    void layoutSubviews() override;
};

}  // namespace platform
