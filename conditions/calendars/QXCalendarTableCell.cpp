// SPDX-License-Identifier: MIT
#include "conditions/calendars/QXCalendarTableCell.h"

#include <utility>

namespace quietrix {

using platform::PSSpecifier;
using platform::UITableViewCellStyleDefault;

PLATFORM_REGISTER_CELL_CLASS(QXCalendarTableCell)

QXCalendarTableCell::QXCalendarTableCell(std::int64_t /*style*/, std::string reuseIdentifier,
                                         std::shared_ptr<PSSpecifier> specifier)
    : PSTableCell(UITableViewCellStyleDefault, std::move(reuseIdentifier), std::move(specifier)) {}

QXCalendarTableCell::QXCalendarTableCell(std::shared_ptr<PSSpecifier> specifier)
    : QXCalendarTableCell(UITableViewCellStyleDefault, {}, std::move(specifier)) {}

}  // namespace quietrix
