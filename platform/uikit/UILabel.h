// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "platform/uikit/UIView.h"

namespace platform {

inline constexpr std::int64_t NSTextAlignmentLeft = 0;
inline constexpr std::int64_t NSTextAlignmentCenter = 1;
inline constexpr std::int64_t NSTextAlignmentRight = 2;

/// One run of text. A nil text is kept apart from an empty one.
class UILabel : public UIView {
    PLATFORM_CLASS(UILabel, UIView)

  public:
    using UIView::UIView;

    const std::optional<std::string>& text() const { return text_; }
    void setText(std::optional<std::string> text) { text_ = std::move(text); }
    const std::shared_ptr<UIColor>& textColor() const { return textColor_; }
    void setTextColor(std::shared_ptr<UIColor> color) { textColor_ = std::move(color); }
    const std::shared_ptr<UIColor>& shadowColor() const { return shadowColor_; }
    void setShadowColor(std::shared_ptr<UIColor> color) { shadowColor_ = std::move(color); }
    /// The system font's size in points.
    double fontSize() const { return fontSize_; }
    void setFontSize(double size) { fontSize_ = size; }
    std::int64_t textAlignment() const { return textAlignment_; }
    void setTextAlignment(std::int64_t alignment) { textAlignment_ = alignment; }
    /// 0 lets the text wrap without limit.
    std::int64_t numberOfLines() const { return numberOfLines_; }
    void setNumberOfLines(std::int64_t lines) { numberOfLines_ = lines; }

  private:
    std::optional<std::string> text_;
    std::shared_ptr<UIColor> textColor_;
    std::shared_ptr<UIColor> shadowColor_;
    double fontSize_ = 17;
    std::int64_t textAlignment_ = NSTextAlignmentLeft;
    std::int64_t numberOfLines_ = 1;
};

}  // namespace platform
