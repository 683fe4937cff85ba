// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/PSControlTableCell.h"
#include "platform/uikit/UISlider.h"

namespace platform {

/// A slider row: range from "min" and "max", end images from "leftImage" and "rightImage".
class PSSliderTableCell : public PSControlTableCell {
    PLATFORM_CLASS(PSSliderTableCell, PSControlTableCell)

  public:
    PSSliderTableCell(std::int64_t style, std::string reuseIdentifier,
                      std::shared_ptr<PSSpecifier> specifier);

    std::shared_ptr<UISlider> slider() const;
    void refreshCellContentsWithSpecifier(const std::shared_ptr<PSSpecifier>& specifier) override;
    Value controlValue() const override;
    /// A number; brought into the range. Not-a-number is refused.
    Result<void> userMovedControl(const Value& value) override;
    /// Title and slider on one line, both around the row's middle and as wide as the row allows: the slider
    /// hides the title, unless a subclass moves them apart and shows it.
    void layoutSubviews() override;
};

}  // namespace platform
