// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/preferences/PSTableCell.h"
#include "platform/uikit/UILabel.h"

namespace quietrix {

/// The editor's row for a profile's active hours: "From" and "To" under each other, each with its stored time
/// at the right. The row's user info is the profile. The times are those of the moment in which the cell was
/// made.
class QXDateRangeCell : public platform::PSTableCell {
    PLATFORM_CLASS(QXDateRangeCell, platform::PSTableCell)

  public:
    QXDateRangeCell(std::int64_t style, std::string reuseIdentifier,
                    std::shared_ptr<platform::PSSpecifier> specifier);
    /// The default style and no reuse identifier.
    explicit QXDateRangeCell(std::shared_ptr<platform::PSSpecifier> specifier);

    /// Keeps the row's name off the cell and the times at their distance from its right edge.
    void layoutSubviews() override;
};

}  // namespace quietrix
