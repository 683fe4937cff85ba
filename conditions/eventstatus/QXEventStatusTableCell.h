// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/preferences/PSTableCell.h"

namespace quietrix {

/// The row of an event status: its title stands in a label of the cell's own, in the cell's tint.
class QXEventStatusTableCell : public platform::PSTableCell {
    PLATFORM_CLASS(QXEventStatusTableCell, platform::PSTableCell)

  public:
    QXEventStatusTableCell(std::int64_t style, std::string reuseIdentifier,
                           std::shared_ptr<platform::PSSpecifier> specifier);
    /// The default style and no reuse identifier.
    explicit QXEventStatusTableCell(std::shared_ptr<platform::PSSpecifier> specifier);

    void layoutSubviews() override;
};

}  // namespace quietrix
