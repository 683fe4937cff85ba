// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/PSTableCell.h"
#include "platform/uikit/UIControl.h"

namespace platform {

/// A cell with a control that shows the row's value and writes the user's moves back through the row's
/// setter.
class PSControlTableCell : public PSTableCell {
    PLATFORM_CLASS(PSControlTableCell, PSTableCell)

  public:
    using PSTableCell::PSTableCell;

    /// Null for a cell whose class has not set one.
    const std::shared_ptr<UIControl>& control() const { return control_; }
    /// Takes the place of the old control in the content view; null takes it away.
    void setControl(std::shared_ptr<UIControl> control);
    std::shared_ptr<UIView> controlView() const override { return control_; }

  protected:
    /// Why the control cannot be moved; empty when it can.
    Result<void> checkEnabled() const;
    /// The user's move, once the control stands where it was moved to: writes what the control shows to the
    /// row, then tells the control's own targets. The row's setter may drop this very cell: the caller keeps
    /// it alive.
    void writeBack();

  private:
    std::shared_ptr<UIControl> control_;
};

}  // namespace platform
