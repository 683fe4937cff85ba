// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/uikit/UISlider.h"
#include "profile/cells/QXSliderCell.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Rows.h"

namespace quietrix {
namespace {

using doubles::makeCellOf;
using platform::PSSpecifier;
using platform::PSTableCell;
using platform::Rect;

constexpr const char* longName = "The volume of everything that plays music, films and games on this phone";

std::shared_ptr<PSSpecifier> volumeRow(std::string_view name) {
    return doubles::makeRowOfCellClass(name, platform::PSCellType::Slider, "QXSliderCell");
}

void layOut(PSTableCell& cell) {
    cell.setFrame({0, 0, 390, QXSliderCell::defaultCellHeight()});
    cell.setNeedsLayout();
    cell.layoutIfNeeded();
}

TEST(QXSliderCell, layout_movesTitleUpAndSliderDownByFifteenPoints) {
    const doubles::Phone phone;
    const auto row = volumeRow("Volume");
    platform::PSSliderTableCell plain(0, "", row);
    plain.refreshCellContentsWithSpecifier(row);
    layOut(plain);
    const auto cell = makeCellOf<QXSliderCell>(row);
    layOut(*cell);
    Rect title = plain.textLabel()->frame();
    title.y -= 15;
    Rect slider = plain.controlView()->frame();
    slider.y += 15;
    EXPECT_EQ(title, cell->textLabel()->frame());
    EXPECT_EQ(slider, cell->controlView()->frame());
    layOut(*cell);
    EXPECT_EQ(title, cell->textLabel()->frame())
        << "the shift is relative to the base's place, not to itself";
}

TEST(QXSliderCell, longTitle_mayWrapAndStaysVisibleAfterEveryLayout) {
    const doubles::Phone phone;
    const auto cell = makeCellOf<QXSliderCell>(volumeRow(longName));
    for (int pass = 0; pass < 3; ++pass) {
        cell->textLabel()->setAlpha(0);
        layOut(*cell);
        EXPECT_EQ(0, cell->textLabel()->numberOfLines());
        EXPECT_FALSE(cell->textLabel()->isHidden());
        EXPECT_EQ(1.0, cell->textLabel()->alpha());
        EXPECT_EQ(longName, cell->textLabel()->text());
    }
}

TEST(QXSliderCell, madeFromTheRowAlone_hasTheSameTitleAndLayout) {
    const doubles::Phone phone;
    const auto row = volumeRow(longName);
    const auto byFramework = makeCellOf<QXSliderCell>(row);
    const auto alone = std::make_shared<QXSliderCell>(row);
    EXPECT_EQ("", alone->reuseIdentifier());
    EXPECT_EQ(longName, alone->textLabel()->text());
    EXPECT_EQ(0, alone->textLabel()->numberOfLines());
    layOut(*byFramework);
    layOut(*alone);
    EXPECT_EQ(byFramework->textLabel()->frame(), alone->textLabel()->frame());
    EXPECT_EQ(byFramework->controlView()->frame(), alone->controlView()->frame());
}

TEST(QXSliderCell, heightOfItsRows_isSeventyPoints) {
    const doubles::Phone phone;
    EXPECT_EQ(70.0, QXSliderCell::defaultCellHeight());
    EXPECT_EQ(70.0, PSTableCell::heightForSpecifier(*volumeRow("Volume")));
}

}  // namespace
}  // namespace quietrix
