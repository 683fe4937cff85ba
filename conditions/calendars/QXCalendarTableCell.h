// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/preferences/PSTableCell.h"

namespace quietrix {

/// The row of a calendar: always of the default style, whatever style a link row would have.
class QXCalendarTableCell : public platform::PSTableCell {
    PLATFORM_CLASS(QXCalendarTableCell, platform::PSTableCell)

  public:
    QXCalendarTableCell(std::int64_t style, std::string reuseIdentifier,
                        std::shared_ptr<platform::PSSpecifier> specifier);
    /// The default style and no reuse identifier.
    explicit QXCalendarTableCell(std::shared_ptr<platform::PSSpecifier> specifier);
};

}  // namespace quietrix
