// SPDX-License-Identifier: MIT
#include "velmora/VMPackageHeaderCell.h"

#include <optional>
#include <string>
#include <utility>

namespace velmora {

PLATFORM_REGISTER_CELL_CLASS(VMPackageHeaderCell)

namespace {

constexpr double margin = 16;
constexpr double titleHeight = 40;
constexpr double subtitleLineHeight = 22;
constexpr double narrowWidth = 320;

bool isNarrow(double width) {
    return width < narrowWidth;
}

std::optional<std::string> textOf(const platform::PSSpecifier& specifier, std::string_view key) {
    const platform::Value value = specifier.propertyForKey(key);
    return value.string() == nullptr ? std::optional<std::string>() : *value.string();
}

}  // namespace

VMPackageHeaderCell::VMPackageHeaderCell(std::int64_t style, std::string reuseIdentifier,
                                         std::shared_ptr<platform::PSSpecifier> specifier)
    : PSTableCell(style, std::move(reuseIdentifier), std::move(specifier)) {
    textLabel()->setFontSize(34);
    textLabel()->setTextAlignment(platform::NSTextAlignmentCenter);
    detailTextLabel()->setFontSize(15);
    detailTextLabel()->setTextAlignment(platform::NSTextAlignmentCenter);
    detailTextLabel()->setNumberOfLines(0);
}

double VMPackageHeaderCell::preferredHeightForWidth(double width) const {
    return defaultCellHeight() + (isNarrow(width) ? subtitleLineHeight : 0);
}

void VMPackageHeaderCell::refreshCellContentsWithSpecifier(
    const std::shared_ptr<platform::PSSpecifier>& specifier) {
    PSTableCell::refreshCellContentsWithSpecifier(specifier);
    if (!specifier) return;
    textLabel()->setText(textOf(*specifier, "title"));
    detailTextLabel()->setText(textOf(*specifier, "subTitle"));
}

void VMPackageHeaderCell::layoutSubviews() {
    PSTableCell::layoutSubviews();
    const platform::Rect area = bounds();
    const double width = area.width > 2 * margin ? area.width - 2 * margin : 0;
    const double subtitleHeight = subtitleLineHeight * (isNarrow(area.width) ? 2 : 1);
    const double top = (area.height - titleHeight - subtitleHeight) / 2;
    textLabel()->setFrame({margin, top, width, titleHeight});
    detailTextLabel()->setFrame({margin, top + titleHeight, width, subtitleHeight});
}

}  // namespace velmora
