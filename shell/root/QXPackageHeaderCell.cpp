// SPDX-License-Identifier: MIT
#include "shell/root/QXPackageHeaderCell.h"

#include "platform/uikit/UIDevice.h"
#include "shell/base/NavBarColor.h"
#include "shell/base/ProductInfo.h"

namespace quietrix {

using platform::UIColor;

namespace {

/// How far the pad's background reaches beyond the cell's left edge: over the margin of the pad's table.
constexpr double padOverhang = 40;

}  // namespace

PLATFORM_REGISTER_CELL_CLASS(QXPackageHeaderCell)

QXPackageHeaderCell::QXPackageHeaderCell(std::int64_t style, std::string reuseIdentifier,
                                         std::shared_ptr<platform::PSSpecifier> specifier)
    : VMPackageHeaderCell(style, std::move(reuseIdentifier), std::move(specifier)) {
    const auto pattern = navBarPatternColor(QXPackageHeaderCell::staticClass());
    const auto color = pattern ? pattern->colorWithAlphaComponent(0.85) : nullptr;
    if (UI_USER_INTERFACE_IDIOM() != platform::UIUserInterfaceIdiomPad) {
        setBackgroundColor(color);
        return;
    }
    const double width = frame().width + padOverhang;
    const auto background = std::make_shared<platform::UIView>(
        platform::Rect{-padOverhang, 0, width, VMPackageHeaderCell::preferredHeightForWidth(width)});
    background->setAutoresizingMask(platform::UIViewAutoresizingFlexibleWidth);
    background->setBackgroundColor(color);
    addSubview(background);
    sendSubviewToBack(background);
}

void QXPackageHeaderCell::layoutSubviews() {
    VMPackageHeaderCell::layoutSubviews();
    textLabel()->setBackgroundColor(UIColor::clearColor());
    textLabel()->setTextColor(UIColor::whiteColor());
}

}  // namespace quietrix
