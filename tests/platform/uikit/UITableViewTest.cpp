// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/preferences/PSTableCell.h"
#include "platform/uikit/UITableView.h"
#include "tests/doubles/Phone.h"

namespace platform {
namespace {

/// Two sections of one and three rows.
class Rows : public UITableViewDataSource, public UITableViewDelegate {
  public:
    std::int64_t numberOfSectionsInTableView(const std::shared_ptr<UITableView>&) override { return 2; }
    std::int64_t tableView_numberOfRowsInSection(const std::shared_ptr<UITableView>&,
                                                 std::int64_t section) override {
        return section == 0 ? 1 : 3;
    }
    std::shared_ptr<UITableViewCell> tableView_cellForRowAtIndexPath(const std::shared_ptr<UITableView>&,
                                                                     IndexPath) override {
        ++cellsMade;
        return std::make_shared<UITableViewCell>();
    }
    void tableView_didSelectRowAtIndexPath(const std::shared_ptr<UITableView>&, IndexPath path) override {
        chosen.push_back(path);
    }

    int cellsMade = 0;
    std::vector<IndexPath> chosen;
};

class TableWithSource : public testing::Test {
  protected:
    TableWithSource() {
        table_->setDataSource(&rows_);
        table_->setDelegate(&rows_);
    }

    doubles::Phone phone_;
    Rows rows_;
    std::shared_ptr<UITableView> table_ = std::make_shared<UITableView>();
};

TEST_F(TableWithSource, cell_isAskedForOnceUntilItsRowIsReloaded) {
    const auto cell = table_->cellForRowAtIndexPath({1, 2});
    ASSERT_NE(nullptr, cell);
    EXPECT_EQ(cell, table_->cellForRowAtIndexPath({1, 2}));
    EXPECT_EQ(1, rows_.cellsMade);
    table_->reloadRowAtIndexPath_withRowAnimation({1, 2}, UITableViewRowAnimationNone);
    EXPECT_NE(cell, table_->cellForRowAtIndexPath({1, 2}));
    EXPECT_EQ(2, rows_.cellsMade);
}

TEST_F(TableWithSource, reload_takesTheRowsSelectionOnly) {
    table_->selectRowAtIndexPath({1, 1});
    table_->reloadRowAtIndexPath_withRowAnimation({1, 2}, UITableViewRowAnimationNone);
    EXPECT_EQ((IndexPath{1, 1}), table_->indexPathForSelectedRow());
    table_->reloadRowAtIndexPath_withRowAnimation({1, 1}, UITableViewRowAnimationNone);
    EXPECT_EQ(std::nullopt, table_->indexPathForSelectedRow());
}

TEST_F(TableWithSource, rowsThatAreNotThere_haveNoCellAndTakeNoTap) {
    for (const auto path : {IndexPath{-1, 0}, IndexPath{0, -1}, IndexPath{0, 1}, IndexPath{2, 0}}) {
        EXPECT_EQ(nullptr, table_->cellForRowAtIndexPath(path));
        EXPECT_FALSE(table_->userTappedRowAtIndexPath(path));
    }
    EXPECT_EQ(0, rows_.cellsMade);
    EXPECT_TRUE(rows_.chosen.empty());
    EXPECT_EQ(std::nullopt, table_->indexPathForSelectedRow());
}

TEST_F(TableWithSource, tap_selectsAndTellsTheDelegate) {
    EXPECT_TRUE(table_->userTappedRowAtIndexPath({1, 1}));
    EXPECT_EQ((IndexPath{1, 1}), table_->indexPathForSelectedRow());
    EXPECT_EQ((std::vector<IndexPath>{{1, 1}}), rows_.chosen);
}

TEST_F(TableWithSource, selectionByTheProgram_tellsNobody) {
    table_->selectRowAtIndexPath_animated_scrollPosition({1, 1}, true, UITableViewScrollPositionNone);
    EXPECT_EQ((IndexPath{1, 1}), table_->indexPathForSelectedRow());
    EXPECT_TRUE(rows_.chosen.empty());
}

TEST_F(TableWithSource, withoutTouches_takesNoTap) {
    table_->setUserInteractionEnabled(false);
    EXPECT_FALSE(table_->userTappedRowAtIndexPath({1, 1}));
}

TEST_F(TableWithSource, sourceTakenAway_hasNoRows) {
    table_->setDataSource(nullptr);
    EXPECT_EQ(0, table_->numberOfRowsInSection(0));
    EXPECT_EQ(nullptr, table_->cellForRowAtIndexPath({0, 0}));
}

TEST(TableView, dequeued_isOfTheRegisteredKindOrNothing) {
    const doubles::Phone phone;
    const auto table = std::make_shared<UITableView>();
    EXPECT_EQ(nullptr, table->dequeueReusableCellWithIdentifier_forIndexPath("row", {}));
    table->registerCell_forCellReuseIdentifier(
        [](const std::string& identifier) {
            return std::make_shared<PSTableCell>(UITableViewCellStyleDefault, identifier, nullptr);
        },
        "row");
    const auto cell = table->dequeueReusableCellWithIdentifier_forIndexPath("row", {});
    ASSERT_NE(nullptr, std::dynamic_pointer_cast<PSTableCell>(cell));
    EXPECT_EQ("row", cell->reuseIdentifier());
    EXPECT_NE(cell, table->dequeueReusableCellWithIdentifier_forIndexPath("row", {}));
}

}  // namespace
}  // namespace platform
