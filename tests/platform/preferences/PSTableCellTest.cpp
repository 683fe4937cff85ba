// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/preferences/PSEditableTableCell.h"
#include "platform/preferences/PSSliderTableCell.h"
#include "platform/preferences/PSSwitchTableCell.h"
#include "platform/preferences/PSTableCell.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/ShownList.h"

namespace platform {
namespace {

using doubles::errorOf;
using doubles::makeControlRow;
using doubles::makeRow;
using doubles::required;
using doubles::RowTarget;

class TallTestCell : public PSTableCell {
    PLATFORM_CLASS(TallTestCell, PSTableCell)

  public:
    using PSTableCell::PSTableCell;
    static double defaultCellHeight() { return 70.0; }
};
PLATFORM_REGISTER_CELL_CLASS(TallTestCell)

class TallerTestCell : public TallTestCell {
    PLATFORM_CLASS(TallerTestCell, TallTestCell)

  public:
    using TallTestCell::TallTestCell;
};
PLATFORM_REGISTER_CELL_CLASS(TallerTestCell)

class TableCells : public testing::Test {
  protected:
    static std::shared_ptr<PSTableCell> cellOfClass(const char* name) {
        const auto row = makeRow("Row", PSCellType::Switch);
        row->setProperty_forKey(name, "cellClass");
        return PSTableCell::makeCell(row);
    }

    doubles::Phone phone_;
};

TEST_F(TableCells, kinds_haveTheirStockClasses) {
    const std::vector<std::pair<PSCellType, std::string>> kinds{
        {PSCellType::Link, "PSTableCell"},
        {PSCellType::TitleValue, "PSTableCell"},
        {PSCellType::StaticText, "PSTableCell"},
        {PSCellType::Button, "PSTableCell"},
        {PSCellType::Switch, "PSSwitchTableCell"},
        {PSCellType::Slider, "PSSliderTableCell"},
        {PSCellType::EditText, "PSEditableTableCell"}};
    for (const auto& [kind, name] : kinds) {
        const auto row = makeRow("Row", kind);
        const auto cell = PSTableCell::makeCell(row);
        ASSERT_NE(nullptr, cell) << name;
        EXPECT_EQ(name, cell->getClass().name());
        EXPECT_EQ("Row", cell->textLabel()->text());
        EXPECT_EQ(row, cell->specifier());
    }
    EXPECT_EQ(nullptr, PSTableCell::makeCell(nullptr));
}

TEST_F(TableCells, cellClass_isMadeInsteadOfTheStockOne) {
    EXPECT_EQ("TallTestCell", required(cellOfClass("TallTestCell"))->getClass().name());
    EXPECT_TRUE(phone_.log->lines().empty());
}

TEST_F(TableCells, unknownClassOrOneThatIsNoCell_isLoggedAndTheStockCellMade) {
    EXPECT_EQ("PSSwitchTableCell", required(cellOfClass("NoSuchCell"))->getClass().name());
    EXPECT_EQ("PSSwitchTableCell", required(cellOfClass("UILabel"))->getClass().name());
    const auto lines = phone_.log->lines();
    ASSERT_EQ(2U, lines.size());
    EXPECT_EQ("PSTableCell: There is no class named \"NoSuchCell\".", lines[0]);
    EXPECT_EQ("PSTableCell: The class \"UILabel\" is no \"PSTableCell\".", lines[1]);
    const auto row = makeRow("Row");
    row->setProperty_forKey(5, "cellClass");
    EXPECT_EQ("PSTableCell", required(PSTableCell::makeCell(row))->getClass().name());
    EXPECT_EQ(3U, phone_.log->lines().size());
}

TEST_F(TableCells, headerCell_isOfTheNamedClassOrNone) {
    const auto group = doubles::makeGroup("Header");
    EXPECT_EQ("TallTestCell",
              required(PSTableCell::makeCellOfClass("TallTestCell", group))->getClass().name());
    EXPECT_EQ(nullptr, PSTableCell::makeCellOfClass("NoSuchCell", group));
    EXPECT_EQ(1U, phone_.log->lines().size());
}

TEST_F(TableCells, heights_areTheClassesOwnAndInherited) {
    EXPECT_EQ(44.0, PSTableCell::heightOfClass("PSTableCell"));
    EXPECT_EQ(70.0, PSTableCell::heightOfClass("TallTestCell"));
    EXPECT_EQ(70.0, PSTableCell::heightOfClass("TallerTestCell"));
    EXPECT_EQ(44.0, PSTableCell::heightOfClass("NoSuchCell"));
    EXPECT_EQ(70.0, required(cellOfClass("TallTestCell"))->preferredHeightForWidth(390));
}

TEST_F(TableCells, linkRow_hasAnArrowAndNeverItsGettersValue) {
    const auto target = std::make_shared<RowTarget>();
    target->stored = "an identifier";
    const auto cell = required(PSTableCell::makeCell(makeControlRow("Link", PSCellType::Link, target)));
    EXPECT_EQ(UITableViewCellAccessoryDisclosureIndicator, cell->accessoryType());
    EXPECT_EQ(UITableViewCellStyleValue1, cell->style());
    EXPECT_FALSE(cell->detailTextLabel()->text().has_value());
}

TEST_F(TableCells, titleValueRow_showsItsGettersValue) {
    const auto target = std::make_shared<RowTarget>();
    const auto row = makeControlRow("Version", PSCellType::TitleValue, target);
    const auto cell = required(PSTableCell::makeCell(row));
    EXPECT_FALSE(cell->detailTextLabel()->text().has_value());
    target->stored = 3;
    cell->refreshCellContentsWithSpecifier(row);
    EXPECT_EQ("3", cell->detailTextLabel()->text());
}

TEST_F(TableCells, icon_comesFromTheRow) {
    const auto image = std::make_shared<UIImage>();
    const auto row = makeRow("Misc", PSCellType::Link);
    row->setProperty_forKey(image, "iconImage");
    const auto cell = required(PSTableCell::makeCell(row));
    EXPECT_EQ(image, cell->imageView()->image());
    cell->setFrame({0, 0, 390, 44});
    cell->layoutIfNeeded();
    EXPECT_EQ(60.0, cell->textLabel()->frame().x);
}

TEST_F(TableCells, destructiveButton_isRed) {
    const auto row = makeRow("Reset", PSCellType::Button);
    EXPECT_EQ(nullptr, required(PSTableCell::makeCell(row))->textLabel()->textColor());
    row->setProperty_forKey(true, "isDestructive");
    EXPECT_TRUE(required(required(PSTableCell::makeCell(row))->textLabel()->textColor())
                    ->isEqual(*UIColor::redColor()));
}

TEST_F(TableCells, refresh_leavesWhatAScreenDressed) {
    const auto row = makeRow("Calendar", PSCellType::Link);
    const auto cell = required(PSTableCell::makeCell(row));
    cell->setAccessoryType(UITableViewCellAccessoryCheckmark);
    cell->detailTextLabel()->setText("All Day");
    cell->detailTextLabel()->setTextColor(UIColor::darkGrayColor());
    cell->textLabel()->setTextColor(UIColor::redColor());
    row->setName("Renamed");
    cell->refreshCellContentsWithSpecifier(row);
    EXPECT_EQ(UITableViewCellAccessoryCheckmark, cell->accessoryType());
    EXPECT_EQ("All Day", cell->detailTextLabel()->text());
    EXPECT_TRUE(required(cell->textLabel()->textColor())->isEqual(*UIColor::redColor()));
    EXPECT_EQ("Renamed", cell->textLabel()->text());
}

TEST_F(TableCells, cellWithoutAControl_saysSo) {
    const auto cell = required(PSTableCell::makeCell(makeRow("Plain")));
    EXPECT_TRUE(cell->controlValue().isNil());
    EXPECT_EQ(nullptr, cell->controlView());
    const auto moved = cell->userMovedControl(true);
    ASSERT_FALSE(moved.has_value());
    EXPECT_EQ("The row \"Plain\" has no control.", errorOf(moved));
}

TEST_F(TableCells, cellOfNoRow_isHarmless) {
    const auto cell = std::make_shared<PSTableCell>(nullptr);
    cell->refreshCellContentsWithSpecifier(nullptr);
    cell->layoutIfNeeded();
    EXPECT_EQ(nullptr, cell->specifier());
    EXPECT_FALSE(std::make_shared<PSSwitchTableCell>(0, "", nullptr)->userMovedControl("x").has_value());
}

}  // namespace
}  // namespace platform
