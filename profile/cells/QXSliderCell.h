// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/preferences/PSSliderTableCell.h"

namespace quietrix {

/// A volume slider whose title, which may take several lines, stands above the slider instead of being hidden
/// by it.
class QXSliderCell : public platform::PSSliderTableCell {
    PLATFORM_CLASS(QXSliderCell, platform::PSSliderTableCell)

  public:
    QXSliderCell(std::int64_t style, std::string reuseIdentifier,
                 std::shared_ptr<platform::PSSpecifier> specifier);
    /// The default style and no reuse identifier.
    explicit QXSliderCell(std::shared_ptr<platform::PSSpecifier> specifier);

    /// In points: room for the title's line and the slider's.
    static double defaultCellHeight() { return 70.0; }

    /// Shows the row's name as the title. A null row has no name.
    void updateData(const std::shared_ptr<platform::PSSpecifier>& specifier);
    /// Moves the two apart from wherever the base has put them.
    void layoutSubviews() override;
};

}  // namespace quietrix
