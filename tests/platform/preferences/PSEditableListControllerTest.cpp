// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/preferences/PSEditableListController.h"
#include "tests/doubles/ScreenFixture.h"
#include "tests/doubles/ShownList.h"

namespace platform {
namespace {

using doubles::makeGroup;
using doubles::makeRow;
using doubles::required;

/// Lets its rows named "deletable" be deleted.
class DeletingList : public PSEditableListController {
  public:
    SpecifierArray specifiers() override {
        if (!specifiers_) {
            specifiers_ = std::make_shared<SpecifierList>(
                SpecifierList{makeGroup("G"), makeRow("fixed"), makeRow("deletable"), makeRow("last")});
        }
        return specifiers_;
    }
    std::int64_t tableView_editingStyleForRowAtIndexPath(const std::shared_ptr<UITableView>& /*table*/,
                                                         IndexPath path) override {
        const auto row = required(specifierAtIndex(indexForRow_inGroup(path.row, path.section)));
        return row->name() == "deletable" ? UITableViewCellEditingStyleDelete
                                          : UITableViewCellEditingStyleNone;
    }
    void tableView_commitEditingStyle_forRowAtIndexPath(const std::shared_ptr<UITableView>& table,
                                                        std::int64_t style, IndexPath path) override {
        wasEditing = isEditing();
        PSEditableListController::tableView_commitEditingStyle_forRowAtIndexPath(table, style, path);
    }
    bool wasEditing = false;
};

class EditableList : public doubles::ScreenFixture<DeletingList, doubles::Phone> {
  protected:
    EditableList() { screen_ = std::make_shared<DeletingList>(); }
    void show() { openScreen(doubles::Place::First, screen_); }
    std::shared_ptr<UIBarButtonItem> button() const {
        return screen_->navigationItem()->rightBarButtonItem();
    }
};

TEST_F(EditableList, editButton_standsAtTheRightWhenTheSideIsEmpty) {
    show();
    ASSERT_NE(nullptr, button());
    EXPECT_EQ(UIBarButtonSystemItemEdit, button()->systemItem());
    EXPECT_EQ("editButtonAction:", button()->action().selector());
    EXPECT_NE(screen_->_editButtonBarItem(), screen_->_editButtonBarItem());
}

TEST_F(EditableList, buttonOfTheScreensOwn_isNotReplaced) {
    const auto own =
        std::make_shared<UIBarButtonItem>(UIBarButtonSystemItemAdd, screen_, UIBarButtonItem::Action());
    screen_->navigationItem()->setRightBarButtonItem_animated(own, true);
    show();
    EXPECT_EQ(own, button());
    screen_->setEditing(true);
    EXPECT_EQ(own, button());
}

TEST_F(EditableList, editButton_switchesEditingAndItsOwnLook) {
    show();
    required(button())->press();
    EXPECT_TRUE(screen_->isEditing());
    EXPECT_EQ(UIBarButtonSystemItemDone, required(button())->systemItem());
    required(button())->press();
    EXPECT_FALSE(screen_->isEditing());
    EXPECT_EQ(UIBarButtonSystemItemEdit, required(button())->systemItem());
}

TEST_F(EditableList, deletedRow_isRemovedAndEditingEnds) {
    show();
    EXPECT_TRUE(screen_->userDeletedRow({0, 1}));
    EXPECT_TRUE(screen_->wasEditing);
    EXPECT_FALSE(screen_->isEditing());
    EXPECT_EQ(3U, screen_->specifiers()->size());
    EXPECT_EQ("last", rowAt(2)->name());
    const auto events = phone_.takeEvents("remove");
    ASSERT_EQ(1U, events.size());
    EXPECT_EQ(Value(2), events[0].at("index"));
    EXPECT_EQ(Value("deletable"), events[0].at("name"));
    EXPECT_EQ(Value(true), events[0].at("animated"));
}

/// Deletes as a screen does that asks first.
class AskingList : public DeletingList {
  public:
    std::int64_t tableView_editingStyleForRowAtIndexPath(const std::shared_ptr<UITableView>& /*table*/,
                                                         IndexPath /*path*/) override {
        return UITableViewCellEditingStyleDelete;
    }
    void tableView_commitEditingStyle_forRowAtIndexPath(const std::shared_ptr<UITableView>& /*table*/,
                                                        std::int64_t style, IndexPath path) override {
        asked = {style, path};
    }
    void confirm() {
        PSEditableListController::tableView_commitEditingStyle_forRowAtIndexPath(table(), asked.first,
                                                                                 asked.second);
    }
    void rebuild(SpecifierList rows) { specifiers_ = std::make_shared<SpecifierList>(std::move(rows)); }
    std::vector<std::string> names() {
        std::vector<std::string> found;
        for (const auto& row : *specifiers()) found.push_back(row->name().value_or(""));
        return found;
    }
    std::pair<std::int64_t, IndexPath> asked;
};

class SwipedList : public EditableList {
  protected:
    using Names = std::vector<std::string>;
    SwipedList() {
        screen_ = asking_;
        show();
        EXPECT_TRUE(asking_->userDeletedRow({0, 1}));
        EXPECT_EQ((IndexPath{0, 1}), asking_->asked.second);
        EXPECT_EQ(UITableViewCellEditingStyleDelete, asking_->asked.first);
    }
    /// What confirming leaves of the rows.
    Names confirmed() {
        asking_->confirm();
        EXPECT_FALSE(asking_->isEditing());
        return asking_->names();
    }

    std::shared_ptr<AskingList> asking_ = std::make_shared<AskingList>();
};

TEST_F(SwipedList, rowsAsTheyWere_loseTheRow) {
    EXPECT_EQ((Names{"G", "fixed", "last"}), confirmed());
}

TEST_F(SwipedList, rowThatMoved_isTheOneThatLeaves) {
    asking_->insertSpecifier_atIndex_animated(makeRow("new"), 1, false);
    EXPECT_EQ((Names{"G", "new", "fixed", "last"}), confirmed());
}

TEST_F(SwipedList, rowThatWasBuiltAnewElsewhere_isTheOneThatLeaves) {
    asking_->rebuild({makeGroup("G"), makeRow("deletable"), makeRow("fixed"), makeRow("last")});
    EXPECT_EQ((Names{"G", "fixed", "last"}), confirmed());
}

TEST_F(SwipedList, rowThatLeft_takesNoOtherWithIt) {
    asking_->rebuild({makeGroup("G"), makeRow("fixed"), makeRow("last")});
    EXPECT_EQ((Names{"G", "fixed", "last"}), confirmed());
    EXPECT_TRUE(phone_.takeEvents("remove").empty());
    EXPECT_TRUE(phone_.log->lines().empty());
}

TEST_F(SwipedList, nextSwipe_meansItsOwnRow) {
    asking_->setEditing(false);
    asking_->rebuild({makeGroup("G"), makeRow("last"), makeRow("fixed"), makeRow("deletable")});
    EXPECT_TRUE(asking_->userDeletedRow({0, 1}));
    EXPECT_EQ((Names{"G", "last", "deletable"}), confirmed());
}

TEST_F(SwipedList, committedTwice_countsThePathFromThenOn) {
    EXPECT_EQ((Names{"G", "fixed", "last"}), confirmed());
    EXPECT_EQ((Names{"G", "fixed"}), confirmed());
}

TEST_F(SwipedList, pathThatNobodySwiped_meansTheRowThere) {
    asking_->asked.second = {0, 0};
    EXPECT_EQ((Names{"G", "deletable", "last"}), confirmed());
}

TEST_F(EditableList, rowWithoutTheDeleteStyle_staysAndEditingDoesNotBegin) {
    show();
    EXPECT_FALSE(screen_->userDeletedRow({0, 0}));
    EXPECT_FALSE(screen_->userDeletedRow({0, 9}));
    EXPECT_FALSE(screen_->userDeletedRow({4, 0}));
    EXPECT_FALSE(screen_->isEditing());
    EXPECT_EQ(4U, screen_->specifiers()->size());
}

TEST_F(EditableList, otherStyles_commitNothing) {
    show();
    screen_->setEditing(true);
    screen_->tableView_commitEditingStyle_forRowAtIndexPath(screen_->table(), UITableViewCellEditingStyleNone,
                                                            {0, 1});
    EXPECT_EQ(4U, screen_->specifiers()->size());
    EXPECT_TRUE(screen_->isEditing());
}

}  // namespace
}  // namespace platform
