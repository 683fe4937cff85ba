// SPDX-License-Identifier: MIT
#include "profile/cells/QXSliderCell.h"

#include <utility>

namespace quietrix {

using platform::PSSpecifier;
using platform::Rect;

PLATFORM_REGISTER_CELL_CLASS(QXSliderCell)

namespace {

/// How far title and slider each move from their common line, in points.
constexpr double shift = 15.0;

}  // namespace

QXSliderCell::QXSliderCell(std::int64_t style, std::string reuseIdentifier,
                           std::shared_ptr<PSSpecifier> specifier)
    : PSSliderTableCell(style, std::move(reuseIdentifier), std::move(specifier)) {
    updateData(PSSliderTableCell::specifier());
}

QXSliderCell::QXSliderCell(std::shared_ptr<PSSpecifier> specifier)
    : QXSliderCell(platform::UITableViewCellStyleDefault, {}, std::move(specifier)) {}

void QXSliderCell::updateData(const std::shared_ptr<PSSpecifier>& specifier) {
    textLabel()->setNumberOfLines(0);
    textLabel()->setHidden(false);
    textLabel()->setAlpha(1.0);
    textLabel()->setText(specifier ? specifier->name() : std::nullopt);
}

void QXSliderCell::layoutSubviews() {
    PSSliderTableCell::layoutSubviews();
    textLabel()->setHidden(false);
    textLabel()->setAlpha(1.0);
    Rect title = textLabel()->frame();
    title.y -= shift;
    textLabel()->setFrame(title);
    if (!control()) return;
    Rect slider = control()->frame();
    slider.y += shift;
    control()->setFrame(slider);
}

}  // namespace quietrix
