// SPDX-License-Identifier: MIT
#include "platform/preferences/PSSwitchTableCell.h"

#include <algorithm>
#include <utility>

namespace platform {

PLATFORM_REGISTER_CELL_CLASS(PSSwitchTableCell)

PSSwitchTableCell::PSSwitchTableCell(std::int64_t style, std::string reuseIdentifier,
                                     std::shared_ptr<PSSpecifier> specifier)
    : PSControlTableCell(style, std::move(reuseIdentifier), std::move(specifier)) {
    setControl(std::make_shared<UISwitch>());
}

std::shared_ptr<UISwitch> PSSwitchTableCell::switchControl() const {
    return std::dynamic_pointer_cast<UISwitch>(control());
}

void PSSwitchTableCell::setOn(bool on) {
    if (const auto toggle = switchControl()) toggle->setOn(on);
}

void PSSwitchTableCell::refreshCellContentsWithSpecifier(const std::shared_ptr<PSSpecifier>& specifier) {
    PSControlTableCell::refreshCellContentsWithSpecifier(specifier);
    if (specifier && specifier->getter()) setOn(specifier->performGetter().isTrue());
}

Value PSSwitchTableCell::controlValue() const {
    const auto toggle = switchControl();
    return toggle ? Value(toggle->isOn()) : Value();
}

Result<void> PSSwitchTableCell::userMovedControl(const Value& value) {
    const auto self = shared(this);
    if (auto enabled = checkEnabled(); !enabled) return enabled;
    const std::optional<bool> on = value.boolean();
    if (!on) return failure("A switch takes true or false, not " + value.description() + ".");
    setOn(*on);
    writeBack();
    return {};
}

void PSSwitchTableCell::layoutSubviews() {
    PSControlTableCell::layoutSubviews();
    if (!control()) return;
    constexpr double margin = 16;
    constexpr double gap = 8;
    const Rect area = bounds();
    const Rect size = control()->frame();
    const double left = area.width - margin - size.width;
    control()->setFrame({left, (area.height - size.height) / 2, size.width, size.height});
    Rect title = textLabel()->frame();
    title.width = std::max(0.0, left - gap - title.x);
    textLabel()->setFrame(title);
}

}  // namespace platform
