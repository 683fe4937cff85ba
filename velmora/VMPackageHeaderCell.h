// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/PSTableCell.h"

namespace velmora {

/// The header of a product's first screen: the property "title" large, "subTitle" beneath it. Its height
/// depends on the width it gets.
class VMPackageHeaderCell : public platform::PSTableCell {
    PLATFORM_CLASS(VMPackageHeaderCell, platform::PSTableCell)

  public:
    VMPackageHeaderCell(std::int64_t style, std::string reuseIdentifier,
                        std::shared_ptr<platform::PSSpecifier> specifier);

    static double defaultCellHeight() { return 100.0; }
    /// 100 points; on widths under 320, where the subtitle wraps, 22 more.
    double preferredHeightForWidth(double width) const override;
    void refreshCellContentsWithSpecifier(const std::shared_ptr<platform::PSSpecifier>& specifier) override;
    void layoutSubviews() override;
};

}  // namespace velmora
