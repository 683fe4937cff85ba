// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "velmora/VMPackageHeaderCell.h"

namespace quietrix {

/// The root list's header on the product's pattern: on a phone as the cell's own background, on a pad as a
/// view behind the cell's contents that reaches 40 points further left.
class QXPackageHeaderCell : public velmora::VMPackageHeaderCell {
    PLATFORM_CLASS(QXPackageHeaderCell, velmora::VMPackageHeaderCell)

  public:
    QXPackageHeaderCell(std::int64_t style, std::string reuseIdentifier,
                        std::shared_ptr<platform::PSSpecifier> specifier);

    void layoutSubviews() override;
};

}  // namespace quietrix
