// SPDX-License-Identifier: MIT
#include "platform/uikit/UIColor.h"

#include <cmath>

namespace platform {

PLATFORM_REGISTER_CLASS(UIColor)

namespace {

double component(double value) {
    if (std::isnan(value)) return 0.0;
    return std::fmin(1.0, std::fmax(0.0, value));
}

bool isSameImage(const std::shared_ptr<UIImage>& one, const std::shared_ptr<UIImage>& other) {
    if (one == other) return true;
    return one && other && !one->path().empty() && one->path() == other->path();
}

}  // namespace

std::shared_ptr<UIColor> UIColor::colorWithRed_green_blue_alpha(double red, double green, double blue,
                                                                double alpha) {
    auto color = std::make_shared<UIColor>();
    color->red_ = component(red);
    color->green_ = component(green);
    color->blue_ = component(blue);
    color->alpha_ = component(alpha);
    return color;
}

std::shared_ptr<UIColor> UIColor::colorWithWhite_alpha(double white, double alpha) {
    return colorWithRed_green_blue_alpha(white, white, white, alpha);
}

std::shared_ptr<UIColor> UIColor::colorWithPatternImage(const std::shared_ptr<UIImage>& image) {
    if (!image) return nullptr;
    auto color = std::make_shared<UIColor>();
    color->pattern_ = image;
    return color;
}

std::shared_ptr<UIColor> UIColor::whiteColor() {
    return colorWithWhite_alpha(1.0, 1.0);
}
std::shared_ptr<UIColor> UIColor::blackColor() {
    return colorWithWhite_alpha(0.0, 1.0);
}
std::shared_ptr<UIColor> UIColor::clearColor() {
    return colorWithWhite_alpha(0.0, 0.0);
}
std::shared_ptr<UIColor> UIColor::redColor() {
    return colorWithRed_green_blue_alpha(1.0, 0.0, 0.0, 1.0);
}
std::shared_ptr<UIColor> UIColor::lightGrayColor() {
    return colorWithWhite_alpha(2.0 / 3.0, 1.0);
}
std::shared_ptr<UIColor> UIColor::darkGrayColor() {
    return colorWithWhite_alpha(1.0 / 3.0, 1.0);
}

std::shared_ptr<UIColor> UIColor::colorWithAlphaComponent(double alpha) const {
    auto color = colorWithRed_green_blue_alpha(red_, green_, blue_, alpha);
    color->pattern_ = pattern_;
    return color;
}

bool UIColor::isEqual(const UIColor& other) const {
    return red_ == other.red_ && green_ == other.green_ && blue_ == other.blue_ && alpha_ == other.alpha_ &&
           isSameImage(pattern_, other.pattern_);
}

}  // namespace platform
