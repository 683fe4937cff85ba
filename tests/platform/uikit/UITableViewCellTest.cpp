// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/uikit/UITableView.h"
#include "platform/uikit/UITableViewCell.h"

namespace platform {
namespace {

std::shared_ptr<UITableViewCell> laidOut(std::int64_t style, const std::shared_ptr<UIImage>& image,
                                         std::optional<std::string> detail) {
    auto cell = std::make_shared<UITableViewCell>(style, "cell");
    cell->imageView()->setImage(image);
    cell->detailTextLabel()->setText(std::move(detail));
    cell->setFrame({0, 0, 390, 44});
    cell->layoutIfNeeded();
    return cell;
}

TEST(UITableViewCell, contentView_fillsTheCellAndHoldsTheTitle) {
    const auto cell = laidOut(UITableViewCellStyleDefault, nullptr, std::nullopt);
    EXPECT_EQ((Rect{0, 0, 390, 44}), cell->contentView()->frame());
    EXPECT_EQ(cell, cell->contentView()->superview());
    EXPECT_EQ(cell->contentView(), cell->textLabel()->superview());
    EXPECT_EQ((Rect{16, 0, 358, 44}), cell->textLabel()->frame());
}

TEST(UITableViewCell, title_makesRoomForAnImageAndAnAccessory) {
    const auto cell = laidOut(UITableViewCellStyleDefault, std::make_shared<UIImage>(), std::nullopt);
    EXPECT_EQ(60.0, cell->textLabel()->frame().x);
    EXPECT_LE(cell->imageView()->frame().x + cell->imageView()->frame().width, 60.0);
    const double before = cell->textLabel()->frame().width;
    cell->setAccessoryType(UITableViewCellAccessoryDisclosureIndicator);
    cell->setNeedsLayout();
    cell->layoutIfNeeded();
    EXPECT_LT(cell->textLabel()->frame().width, before);
}

TEST(UITableViewCell, detailOfAValueCell_sharesTheLineWithoutOverlap) {
    const auto cell = laidOut(UITableViewCellStyleValue1, nullptr, "detail");
    const Rect title = cell->textLabel()->frame();
    const Rect detail = cell->detailTextLabel()->frame();
    EXPECT_GT(detail.width, 0.0);
    EXPECT_LE(title.x + title.width, detail.x);
    EXPECT_EQ(390.0 - 16.0, detail.x + detail.width);
    EXPECT_EQ(NSTextAlignmentRight, cell->detailTextLabel()->textAlignment());
    EXPECT_EQ(0.0, laidOut(UITableViewCellStyleDefault, nullptr, "hidden")->detailTextLabel()->frame().width);
}

TEST(UITableViewCell, rowTooSmallForAnything_hasNoNegativeWidths) {
    const auto cell = laidOut(UITableViewCellStyleValue1, nullptr, "detail");
    cell->setFrame({0, 0, 10, 44});
    cell->layoutIfNeeded();
    EXPECT_EQ(0.0, cell->textLabel()->frame().width);
    EXPECT_EQ(0.0, cell->detailTextLabel()->frame().width);
}

TEST(UITableView, cells_comeFromItsOwner) {
    const auto table = std::make_shared<UITableView>();
    EXPECT_EQ(nullptr, table->cellForRowAtIndexPath({0, 0}));
    const auto cell = std::make_shared<UITableViewCell>();
    table->setCellLookup([&](IndexPath path) { return path == IndexPath{1, 2} ? cell : nullptr; });
    EXPECT_EQ(cell, table->cellForRowAtIndexPath({1, 2}));
    EXPECT_EQ(nullptr, table->cellForRowAtIndexPath({2, 1}));
}

TEST(UITableView, deselecting_concernsTheSelectedRowOnly) {
    const auto table = std::make_shared<UITableView>();
    table->selectRowAtIndexPath({0, 1});
    table->deselectRowAtIndexPath_animated({0, 0}, false);
    EXPECT_EQ((IndexPath{0, 1}), table->indexPathForSelectedRow());
    table->deselectRowAtIndexPath_animated({0, 1}, false);
    EXPECT_FALSE(table->indexPathForSelectedRow().has_value());
}

}  // namespace
}  // namespace platform
