// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/foundation/Object.h"
#include "platform/uikit/UIImage.h"

namespace platform {

/// A colour: red, green, blue and alpha from 0 to 1, or an image repeated as a pattern with an alpha. Never
/// changes once made. A null pointer stands for nil, which every user of a colour takes as its default look.
class UIColor : public Object {
    PLATFORM_CLASS(UIColor, Object)

  public:
    static std::shared_ptr<UIColor> colorWithRed_green_blue_alpha(double red, double green, double blue,
                                                                  double alpha);
    static std::shared_ptr<UIColor> colorWithWhite_alpha(double white, double alpha);
    /// Nil for a nil image.
    static std::shared_ptr<UIColor> colorWithPatternImage(const std::shared_ptr<UIImage>& image);
    static std::shared_ptr<UIColor> whiteColor();
    static std::shared_ptr<UIColor> blackColor();
    static std::shared_ptr<UIColor> clearColor();
    static std::shared_ptr<UIColor> redColor();
    static std::shared_ptr<UIColor> lightGrayColor();
    static std::shared_ptr<UIColor> darkGrayColor();

    std::shared_ptr<UIColor> colorWithAlphaComponent(double alpha) const;

    double red() const { return red_; }
    double green() const { return green_; }
    double blue() const { return blue_; }
    double alpha() const { return alpha_; }
    /// The pattern's image; null for a plain colour.
    const std::shared_ptr<UIImage>& patternImage() const { return pattern_; }
    /// Same components and the same pattern file.
    bool isEqual(const UIColor& other) const;

  private:
    double red_ = 0;
    double green_ = 0;
    double blue_ = 0;
    double alpha_ = 1;
    std::shared_ptr<UIImage> pattern_;
};

}  // namespace platform
