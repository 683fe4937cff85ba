// SPDX-License-Identifier: MIT
#include "platform/preferences/PSControlTableCell.h"

#include <utility>

namespace platform {

PLATFORM_REGISTER_CELL_CLASS(PSControlTableCell)

void PSControlTableCell::setControl(std::shared_ptr<UIControl> control) {
    if (control_) control_->removeFromSuperview();
    control_ = std::move(control);
    contentView()->addSubview(control_);
    setNeedsLayout();
}

Result<void> PSControlTableCell::checkEnabled() const {
    if (control_ && control_->isEnabled()) return {};
    const std::string name = specifier() ? specifier()->name().value_or("") : "";
    return failure("The row \"" + name + "\" " + (control_ ? "is disabled." : "has no control."));
}

void PSControlTableCell::writeBack() {
    const auto moved = control_;
    if (const auto row = specifier()) row->performSetterWithValue(controlValue());
    if (moved) moved->sendActionsForControlEvents(UIControlEventValueChanged);
}

}  // namespace platform
