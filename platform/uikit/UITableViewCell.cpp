// SPDX-License-Identifier: MIT
#include "platform/uikit/UITableViewCell.h"

#include <algorithm>
#include <utility>

namespace platform {

PLATFORM_REGISTER_CLASS(UITableViewCell)

namespace {

constexpr double margin = 16;
constexpr double textAfterImage = 60;
constexpr double imageSide = 29;
constexpr double accessoryWidth = 20;
constexpr double gap = 8;

}  // namespace

UITableViewCell::UITableViewCell(std::int64_t style, std::string reuseIdentifier)
    : style_(style),
      reuseIdentifier_(std::move(reuseIdentifier)),
      contentView_(std::make_shared<UIView>()),
      textLabel_(std::make_shared<UILabel>()),
      detailTextLabel_(std::make_shared<UILabel>()),
      imageView_(std::make_shared<UIImageView>()) {
    detailTextLabel_->setTextAlignment(NSTextAlignmentRight);
    addSubview(contentView_);
    contentView_->addSubview(imageView_);
    contentView_->addSubview(textLabel_);
    contentView_->addSubview(detailTextLabel_);
}

void UITableViewCell::layoutSubviews() {
    UIView::layoutSubviews();
    const Rect area = bounds();
    contentView_->setFrame(area);

    const bool hasImage = static_cast<bool>(imageView_->image());
    imageView_->setFrame(hasImage ? Rect{margin, (area.height - imageSide) / 2, imageSide, imageSide}
                                  : Rect{});

    const double left = hasImage ? textAfterImage : margin;
    const double right = margin + (accessoryType_ == UITableViewCellAccessoryNone ? 0 : accessoryWidth);
    const double width = std::max(0.0, area.width - left - right);
    const bool showsDetail = style_ == UITableViewCellStyleValue1 && detailTextLabel_->text().has_value();
    const double textWidth = showsDetail ? std::max(0.0, (width - gap) / 2) : width;
    textLabel_->setFrame({left, 0, textWidth, area.height});
    detailTextLabel_->setFrame(showsDetail ? Rect{left + width - textWidth, 0, textWidth, area.height}
                                           : Rect{});
}

}  // namespace platform
