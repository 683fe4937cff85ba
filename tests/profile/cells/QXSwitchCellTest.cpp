// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "profile/cells/QXSwitchCell.h"
#include "tests/doubles/PluginPhone.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/Rows.h"

namespace quietrix {
namespace {

using doubles::required;
std::shared_ptr<QXSwitchCell> makeCell() {
    return doubles::makeCellOf<QXSwitchCell>(
        doubles::makeRowOfCellClass("Vibrate", platform::PSCellType::Switch, "QXSwitchCell"));
}

TEST(QXSwitchCell, inLightMode_isThePatternWhenOn) {
    const doubles::PluginPhone phone;
    const auto cell = makeCell();
    const auto color = cell->switchControl()->onTintColor();
    ASSERT_NE(nullptr, color);
    ASSERT_NE(nullptr, color->patternImage());
    EXPECT_EQ("nav", color->patternImage()->name());
}

TEST(QXSwitchCell, darkModeChangedBetweenTwoDisplays_changesTheColourAndBack) {
    const doubles::PluginPhone phone;
    const auto cell = makeCell();
    phone.facts->dark = true;
    cell->refreshCellContentsWithSpecifier(cell->specifier());
    const auto dark = cell->switchControl()->onTintColor();
    ASSERT_NE(nullptr, dark);
    EXPECT_EQ(nullptr, dark->patternImage());
    EXPECT_TRUE(dark->isEqual(*platform::UIColor::colorWithWhite_alpha(1, 0.6)));
    phone.facts->dark = false;
    cell->refreshCellContentsWithSpecifier(cell->specifier());
    EXPECT_NE(nullptr, required(cell->switchControl()->onTintColor())->patternImage());
}

}  // namespace
}  // namespace quietrix
