// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/preferences/PSListController.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Rows.h"
#include "velmora/VMControlTableCell.h"
#include "velmora/VMPackageHeaderCell.h"

namespace velmora {
namespace {

using doubles::required;
using platform::PSCellType;
using platform::PSSpecifier;
using platform::PSTableCell;
using platform::Rect;
using platform::UIColor;

/// Takes another colour when on, white in dark mode.
class ColouredTestCell : public VMControlTableCell {
    PLATFORM_CLASS(ColouredTestCell, VMControlTableCell)

  public:
    using VMControlTableCell::VMControlTableCell;
    std::shared_ptr<UIColor> switchCellOnTintColor() override {
        return dark ? UIColor::whiteColor() : UIColor::redColor();
    }
    static inline bool dark = false;
};
PLATFORM_REGISTER_CELL_CLASS(ColouredTestCell)

class HeaderList : public platform::PSListController {
  public:
    platform::SpecifierArray specifiers() override {
        if (!specifiers_) {
            specifiers_ = std::make_shared<platform::SpecifierList>();
            const auto header = PSSpecifier::emptyGroupSpecifier();
            header->setProperty_forKey("VMPackageHeaderCell", "headerCellClass");
            header->setProperty_forKey("Product", "title");
            header->setProperty_forKey("What it does", "subTitle");
            specifiers_->push_back(header);
        }
        return specifiers_;
    }
};

std::shared_ptr<PSSpecifier> switchRow(std::string_view cellClass) {
    return doubles::makeRowOfCellClass("Switch", PSCellType::Switch, cellClass);
}

std::shared_ptr<platform::UISwitch> switchOf(const std::shared_ptr<PSTableCell>& cell) {
    return required(std::dynamic_pointer_cast<VMControlTableCell>(cell))->switchControl();
}

void expectInside(const Rect& inner, const Rect& outer) {
    EXPECT_GE(inner.y, 0.0);
    EXPECT_LE(inner.y + inner.height, outer.height);
    EXPECT_EQ(outer.width / 2, inner.x + inner.width / 2);
}

TEST(VMControlTableCell, switchOfTheBase_hasTheSystemsColour) {
    doubles::Phone phone;
    const auto cell = required(PSTableCell::makeCell(switchRow("VMControlTableCell")));
    ASSERT_EQ("VMControlTableCell", cell->getClass().name());
    EXPECT_EQ(nullptr, switchOf(cell)->onTintColor());
}

TEST(VMControlTableCell, subclassesColour_isAskedForAtEachLook) {
    doubles::Phone phone;
    ColouredTestCell::dark = false;
    const auto row = switchRow("ColouredTestCell");
    const auto cell = required(PSTableCell::makeCell(row));
    EXPECT_TRUE(required(switchOf(cell)->onTintColor())->isEqual(*UIColor::redColor()));
    ColouredTestCell::dark = true;
    cell->refreshCellContentsWithSpecifier(row);
    EXPECT_TRUE(required(switchOf(cell)->onTintColor())->isEqual(*UIColor::whiteColor()));
    ColouredTestCell::dark = false;
    cell->layoutIfNeeded();
    EXPECT_TRUE(required(switchOf(cell)->onTintColor())->isEqual(*UIColor::redColor()));
}

TEST(VMPackageHeaderCell, header_showsTitleAboveSubtitleCentred) {
    doubles::Phone phone;
    const auto list = std::make_shared<HeaderList>();
    const auto cell = list->cellAtIndex(0);
    ASSERT_NE(nullptr, cell);
    EXPECT_EQ((Rect{0, 0, 390, 100}), cell->frame());
    EXPECT_EQ("Product", cell->textLabel()->text());
    EXPECT_EQ("What it does", cell->detailTextLabel()->text());
    EXPECT_EQ(platform::NSTextAlignmentCenter, cell->textLabel()->textAlignment());
    const Rect title = cell->textLabel()->frame();
    const Rect subtitle = cell->detailTextLabel()->frame();
    EXPECT_EQ(title.y + title.height, subtitle.y);
    EXPECT_EQ(title.y, cell->frame().height - subtitle.y - subtitle.height)
        << "as much room above as beneath";
    expectInside(title, cell->frame());
    expectInside(subtitle, cell->frame());
}

TEST(VMPackageHeaderCell, narrowHeader_hasRoomForASecondLine) {
    const auto cell = std::make_shared<VMPackageHeaderCell>(0, "", nullptr);
    EXPECT_EQ(100.0, cell->preferredHeightForWidth(320));
    EXPECT_EQ(122.0, cell->preferredHeightForWidth(319));
    cell->setFrame({0, 0, 300, 122});
    cell->layoutIfNeeded();
    expectInside(cell->textLabel()->frame(), cell->frame());
    expectInside(cell->detailTextLabel()->frame(), cell->frame());
    EXPECT_EQ(44.0, cell->detailTextLabel()->frame().height);
}

TEST(VMPackageHeaderCell, rowWithoutTexts_showsNone) {
    doubles::Phone phone;
    const auto cell = required(
        PSTableCell::makeCellOfClass("VMPackageHeaderCell", PSSpecifier::groupSpecifierWithName("Name")));
    EXPECT_FALSE(cell->textLabel()->text().has_value());
    EXPECT_FALSE(cell->detailTextLabel()->text().has_value());
}

}  // namespace
}  // namespace velmora
