// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "profile/cells/QXSwitchCell.h"
#include "tests/shell/phone/PluginPhone.h"

namespace quietrix {
namespace {

using platform::PSSpecifier;
using platform::PSTableCell;

std::shared_ptr<QXSwitchCell> makeCell() {
    const auto row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        "Vibrate", nullptr, {}, {}, "", platform::PSCellType::Switch, "");
    row->setProperty_forKey("QXSwitchCell", "cellClass");
    return std::dynamic_pointer_cast<QXSwitchCell>(PSTableCell::makeCell(row));
}

TEST(QXSwitchCell, inLightMode_isThePatternWhenOn) {
    const doubles::PluginPhone phone;
    const auto cell = makeCell();
    ASSERT_NE(nullptr, cell);
    const auto color = cell->switchControl()->onTintColor();
    ASSERT_NE(nullptr, color);
    ASSERT_NE(nullptr, color->patternImage());
    EXPECT_EQ("nav", color->patternImage()->name());
}

TEST(QXSwitchCell, darkModeChangedBetweenTwoDisplays_changesTheColourAndBack) {
    const doubles::PluginPhone phone;
    const auto cell = makeCell();
    ASSERT_NE(nullptr, cell);
    phone.facts->dark = true;
    cell->refreshCellContentsWithSpecifier(cell->specifier());
    const auto dark = cell->switchControl()->onTintColor();
    ASSERT_NE(nullptr, dark);
    EXPECT_EQ(nullptr, dark->patternImage());
    EXPECT_TRUE(dark->isEqual(*platform::UIColor::colorWithWhite_alpha(1, 0.6)));
    phone.facts->dark = false;
    cell->refreshCellContentsWithSpecifier(cell->specifier());
    EXPECT_NE(nullptr, cell->switchControl()->onTintColor()->patternImage());
}

}  // namespace
}  // namespace quietrix
