// SPDX-License-Identifier: MIT
#include "conditions/eventstatus/QXEventStatusTableCell.h"

#include <optional>
#include <utility>

namespace quietrix {

using platform::PSSpecifier;
using platform::UILabel;

PLATFORM_REGISTER_CELL_CLASS(QXEventStatusTableCell)

namespace {

constexpr std::int64_t titleTag = 123123;
constexpr double titleLeft = 15;
/// What the title leaves free of the cell's width, for the checkmark.
constexpr double titleNarrower = 40;

}  // namespace

QXEventStatusTableCell::QXEventStatusTableCell(std::int64_t style, std::string reuseIdentifier,
                                               std::shared_ptr<PSSpecifier> specifier)
    : PSTableCell(style, std::move(reuseIdentifier), std::move(specifier)) {
    const auto title = std::make_shared<UILabel>();
    title->setTag(titleTag);
    title->setFontSize(textLabel()->fontSize());
    title->setTextAlignment(textLabel()->textAlignment());
    const auto& row = PSTableCell::specifier();
    title->setText(row ? row->identifier() : std::nullopt);
    addSubview(title);
}

QXEventStatusTableCell::QXEventStatusTableCell(std::shared_ptr<PSSpecifier> specifier)
    : QXEventStatusTableCell(platform::UITableViewCellStyleDefault, {}, std::move(specifier)) {}

void QXEventStatusTableCell::layoutSubviews() {
    PSTableCell::layoutSubviews();
    textLabel()->setText(std::nullopt);
    const auto title = std::dynamic_pointer_cast<UILabel>(viewWithTag(titleTag));
    title->setFrame({titleLeft, 0, bounds().width - titleNarrower, bounds().height});
    title->setTextColor(tintColor());
}

}  // namespace quietrix
