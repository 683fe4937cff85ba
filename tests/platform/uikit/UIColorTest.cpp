// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "platform/uikit/UIColor.h"

namespace platform {
namespace {

TEST(UIColor, components_areKeptWithinZeroAndOne) {
    const auto color = UIColor::colorWithRed_green_blue_alpha(-1, 0.478431, 7, std::nan(""));
    EXPECT_EQ(0.0, color->red());
    EXPECT_EQ(0.478431, color->green());
    EXPECT_EQ(1.0, color->blue());
    EXPECT_EQ(0.0, color->alpha());
}

TEST(UIColor, patternOfNoImage_isNil) {
    EXPECT_EQ(nullptr, UIColor::colorWithPatternImage(nullptr));
}

TEST(UIColor, greys_areThePhonesOwn) {
    EXPECT_TRUE(UIColor::lightGrayColor()->isEqual(*UIColor::colorWithWhite_alpha(2.0 / 3.0, 1)));
    EXPECT_TRUE(UIColor::darkGrayColor()->isEqual(*UIColor::colorWithWhite_alpha(1.0 / 3.0, 1)));
}

TEST(UIColor, alphaComponent_changesNothingElse) {
    const auto image = std::make_shared<UIImage>();
    const auto pattern = UIColor::colorWithPatternImage(image)->colorWithAlphaComponent(0.85);
    EXPECT_EQ(image, pattern->patternImage());
    EXPECT_EQ(0.85, pattern->alpha());
    const auto white = UIColor::whiteColor()->colorWithAlphaComponent(0.6);
    EXPECT_TRUE(white->isEqual(*UIColor::colorWithWhite_alpha(1.0, 0.6)));
}

TEST(UIColor, isEqual_comparesComponentsAndPattern) {
    EXPECT_TRUE(UIColor::redColor()->isEqual(*UIColor::colorWithRed_green_blue_alpha(1, 0, 0, 1)));
    EXPECT_FALSE(UIColor::redColor()->isEqual(*UIColor::blackColor()));
    EXPECT_FALSE(UIColor::blackColor()->isEqual(*UIColor::clearColor()));
    EXPECT_FALSE(UIColor::lightGrayColor()->isEqual(*UIColor::darkGrayColor()));
    const auto one = UIColor::colorWithPatternImage(std::make_shared<UIImage>());
    const auto other = UIColor::colorWithPatternImage(std::make_shared<UIImage>());
    EXPECT_TRUE(one->isEqual(*one));
    EXPECT_FALSE(one->isEqual(*other)) << "two pictures that come from no file are not known to be the same";
    EXPECT_FALSE(one->isEqual(*UIColor::blackColor()));
}

}  // namespace
}  // namespace platform
