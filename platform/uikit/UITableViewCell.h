// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UIView.h"

namespace platform {

inline constexpr std::int64_t UITableViewCellStyleDefault = 0;
inline constexpr std::int64_t UITableViewCellStyleValue1 = 1;

inline constexpr std::int64_t UITableViewCellAccessoryNone = 0;
inline constexpr std::int64_t UITableViewCellAccessoryDisclosureIndicator = 1;
inline constexpr std::int64_t UITableViewCellAccessoryCheckmark = 3;

inline constexpr std::int64_t UITableViewCellEditingStyleNone = 0;
inline constexpr std::int64_t UITableViewCellEditingStyleDelete = 1;

/// Where a row stands in a table. Sections and rows count from 0.
struct IndexPath {
    std::int64_t section = 0;
    std::int64_t row = 0;
    auto operator<=>(const IndexPath&) const = default;
};

/// The view of one row: a content view with title, detail text and image, and an accessory.
class UITableViewCell : public UIView {
    PLATFORM_CLASS(UITableViewCell, UIView)

  public:
    UITableViewCell(std::int64_t style, std::string reuseIdentifier);
    UITableViewCell() : UITableViewCell(UITableViewCellStyleDefault, {}) {}

    std::int64_t style() const { return style_; }
    const std::string& reuseIdentifier() const { return reuseIdentifier_; }
    const std::shared_ptr<UIView>& contentView() const { return contentView_; }
    const std::shared_ptr<UILabel>& textLabel() const { return textLabel_; }
    const std::shared_ptr<UILabel>& detailTextLabel() const { return detailTextLabel_; }
    const std::shared_ptr<UIImageView>& imageView() const { return imageView_; }
    std::int64_t accessoryType() const { return accessoryType_; }
    void setAccessoryType(std::int64_t type) { accessoryType_ = type; }
    /// The content view fills the cell; the text label starts 16 points in (60 with an image) and is as high
    /// as the row. The detail text of a Value1 cell shares the line with it, at the right.
    void layoutSubviews() override;

  private:
    std::int64_t style_;
    std::string reuseIdentifier_;
    std::shared_ptr<UIView> contentView_;
    std::shared_ptr<UILabel> textLabel_;
    std::shared_ptr<UILabel> detailTextLabel_;
    std::shared_ptr<UIImageView> imageView_;
    std::int64_t accessoryType_ = UITableViewCellAccessoryNone;
};

}  // namespace platform
