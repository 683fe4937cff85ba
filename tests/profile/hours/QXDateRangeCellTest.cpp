// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "profile/hours/QXDateRangeCell.h"
#include "profile/model/QXProfile.h"
#include "tests/doubles/PluginPhone.h"
#include "tests/doubles/Rows.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::PSSpecifier;
using platform::PSTableCell;
using platform::Rect;
using platform::UIColor;
using platform::UILabel;

std::shared_ptr<PSSpecifier> hoursRow(std::shared_ptr<QXProfile> profile) {
    const auto row =
        doubles::makeRowOfCellClass("Active Hours", platform::PSCellType::Link, "QXDateRangeCell");
    row->setUserInfo(std::move(profile));
    return row;
}

std::shared_ptr<UILabel> label(PSTableCell& cell, std::int64_t tag) {
    return required(std::dynamic_pointer_cast<UILabel>(cell.contentView()->viewWithTag(tag)));
}

struct HoursLabel {
    std::int64_t tag;
    std::string text;
    Rect frame;
    std::shared_ptr<UIColor> color;
    std::int64_t alignment;
};

TEST(QXDateRangeCell, labels_showTheStoredTimesAtTheirPlaces) {
    const doubles::PluginPhone phone;
    const auto profile = std::make_shared<QXProfile>();
    profile->setStartTime("09:05 am");
    profile->setEndTime("whenever");
    const auto cell = doubles::makeCellOf<QXDateRangeCell>(hoursRow(profile));
    cell->setFrame({0, 0, 375, 64});
    cell->layoutIfNeeded();
    const auto blue = UIColor::colorWithRed_green_blue_alpha(0, 0.478431, 1.0, 1.0);
    const std::vector<HoursLabel> expected{{21, "From", {16, 10, 150, 20}, UIColor::blackColor(), 0},
                                           {22, "09:05 am", {375 - 135, 10, 100, 20}, blue, 2},
                                           {23, "To", {16, 34, 150, 20}, UIColor::blackColor(), 0},
                                           {24, "whenever", {375 - 135, 34, 100, 20}, blue, 2}};
    for (const auto& wanted : expected) {
        const auto shown = label(*cell, wanted.tag);
        EXPECT_EQ(wanted.text, shown->text()) << wanted.tag;
        EXPECT_EQ(wanted.frame, shown->frame()) << wanted.tag;
        EXPECT_TRUE(wanted.color->isEqual(*required(shown->textColor()))) << wanted.tag;
        EXPECT_EQ(wanted.alignment, shown->textAlignment()) << wanted.tag;
        EXPECT_EQ(1, shown->numberOfLines()) << wanted.tag;
    }
}

TEST(QXDateRangeCell, everyLayout_keepsTheRowsNameOff) {
    const doubles::PluginPhone phone;
    const auto cell = doubles::makeCellOf<QXDateRangeCell>(hoursRow(std::make_shared<QXProfile>()));
    for (const double width : {320.0, 390.0}) {
        cell->refreshCellContentsWithSpecifier(cell->specifier());
        cell->setFrame({0, 0, width, 64});
        cell->layoutIfNeeded();
        EXPECT_EQ(std::nullopt, cell->textLabel()->text());
        EXPECT_EQ(width - 135, label(*cell, 22)->frame().x);
        EXPECT_EQ(width - 135, label(*cell, 24)->frame().x);
    }
}

TEST(QXDateRangeCell, madeFromTheRowAlone_hasTheSameLabels) {
    const doubles::PluginPhone phone;
    const auto profile = std::make_shared<QXProfile>();
    profile->setStartTime("9:05 AM");
    QXDateRangeCell cell(hoursRow(profile));
    EXPECT_EQ("9:05 AM", label(cell, 22)->text());
    EXPECT_EQ("", cell.reuseIdentifier());
}

TEST(QXDateRangeCell, rowWithoutAProfile_hasNoTimes) {
    const doubles::PluginPhone phone;
    const auto cell = doubles::makeCellOf<QXDateRangeCell>(hoursRow(nullptr));
    EXPECT_EQ(std::nullopt, label(*cell, 22)->text());
    EXPECT_EQ("To", label(*cell, 23)->text());
}

}  // namespace
}  // namespace quietrix
