// SPDX-License-Identifier: MIT
#include "platform/preferences/PSSliderTableCell.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

PLATFORM_REGISTER_CELL_CLASS(PSSliderTableCell)

PSSliderTableCell::PSSliderTableCell(std::int64_t style, std::string reuseIdentifier,
                                     std::shared_ptr<PSSpecifier> specifier)
    : PSControlTableCell(style, std::move(reuseIdentifier), std::move(specifier)) {
    setControl(std::make_shared<UISlider>());
}

std::shared_ptr<UISlider> PSSliderTableCell::slider() const {
    return std::dynamic_pointer_cast<UISlider>(control());
}

void PSSliderTableCell::refreshCellContentsWithSpecifier(const std::shared_ptr<PSSpecifier>& specifier) {
    PSControlTableCell::refreshCellContentsWithSpecifier(specifier);
    const auto moved = slider();
    if (!specifier || !moved) return;
    moved->setMinimumValueImage(specifier->propertyForKey("leftImage").objectAs<UIImage>());
    moved->setMaximumValueImage(specifier->propertyForKey("rightImage").objectAs<UIImage>());
    moved->setRange(specifier->propertyForKey("min").number().value_or(0.0),
                    specifier->propertyForKey("max").number().value_or(1.0));
    if (const auto value = specifier->performGetter().number()) moved->setValue(*value);
}

Value PSSliderTableCell::controlValue() const {
    const auto shown = slider();
    return shown ? Value(shown->value()) : Value();
}

Result<void> PSSliderTableCell::userMovedControl(const Value& value) {
    const auto self = shared(this);
    if (auto enabled = checkEnabled(); !enabled) return enabled;
    const std::optional<double> number = value.boolean() ? std::nullopt : value.number();
    const auto moved = slider();
    if (!moved || !number || std::isnan(*number)) {
        return failure("A slider takes a number, not " + value.description() + ".");
    }
    moved->setValue(*number);
    writeBack();
    return {};
}

void PSSliderTableCell::layoutSubviews() {
    PSControlTableCell::layoutSubviews();
    if (!control()) return;
    constexpr double margin = 16;
    constexpr double titleHeight = 21;
    constexpr double sliderHeight = 31;
    const Rect area = bounds();
    const double left = textLabel()->frame().x;
    const double width = std::max(0.0, area.width - left - margin);
    textLabel()->setHidden(true);
    textLabel()->setFrame({left, (area.height - titleHeight) / 2, width, titleHeight});
    control()->setFrame({left, (area.height - sliderHeight) / 2, width, sliderHeight});
}

}  // namespace platform
