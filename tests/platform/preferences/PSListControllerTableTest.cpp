// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "platform/preferences/PSConfirmationController.h"
#include "platform/preferences/PSConfirmationSpecifier.h"
#include "platform/preferences/PSPlaceholderController.h"
#include "platform/preferences/PSSwitchTableCell.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/ShownList.h"

namespace platform {
namespace {

using doubles::makeControlRow;
using doubles::makeGroup;
using doubles::makeRow;
using doubles::required;
using doubles::RowTarget;

/// Counts its living and its made instances.
class CountedTestCell : public PSTableCell {
    PLATFORM_CLASS(CountedTestCell, PSTableCell)

  public:
    CountedTestCell(std::int64_t style, std::string reuse, std::shared_ptr<PSSpecifier> specifier)
        : PSTableCell(style, std::move(reuse), std::move(specifier)) {
        ++made;
        ++living;
    }
    ~CountedTestCell() override { --living; }
    static double defaultCellHeight() { return 70.0; }
    static inline int made = 0;
    static inline int living = 0;
};
PLATFORM_REGISTER_CELL_CLASS(CountedTestCell)

class WidthHeaderTestCell : public PSTableCell {
    PLATFORM_CLASS(WidthHeaderTestCell, PSTableCell)

  public:
    using PSTableCell::PSTableCell;
    double preferredHeightForWidth(double width) const override { return width / 2; }
};
PLATFORM_REGISTER_CELL_CLASS(WidthHeaderTestCell)

class OpenedTestScreen : public PSViewController {
    PLATFORM_CLASS(OpenedTestScreen, PSViewController)
};
PLATFORM_REGISTER_CLASS(OpenedTestScreen)

/// Dresses the cells it gives, and counts how often it is asked.
class DressingList : public doubles::GivenList {
  public:
    std::shared_ptr<PSTableCell> tableView_cellForRowAtIndexPath(const std::shared_ptr<UITableView>& table,
                                                                 IndexPath path) override {
        ++dressed;
        auto cell = required(GivenList::tableView_cellForRowAtIndexPath(table, path));
        cell->detailTextLabel()->setText("dressed");
        cell->setAccessoryType(UITableViewCellAccessoryCheckmark);
        return cell;
    }
    int dressed = 0;
};

class ListTable : public testing::Test, public doubles::ShownList {
  protected:
    ListTable() {
        CountedTestCell::made = 0;
        CountedTestCell::living = 0;
    }
    static std::shared_ptr<PSSpecifier> countedRow(const std::string& name) {
        auto row = makeRow(name);
        row->setProperty_forKey("CountedTestCell", "cellClass");
        return row;
    }
    static SpecifierList countedRows(int count) {
        SpecifierList rows{makeGroup("G")};
        for (int i = 0; i < count; ++i) rows.push_back(countedRow(std::to_string(i)));
        return rows;
    }
    std::shared_ptr<PSConfirmationSpecifier> confirmation(const std::shared_ptr<RowTarget>& target) {
        auto row = PSConfirmationSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            "Reset", target, {}, {}, {}, PSCellType::Button, {});
        row->setTitle("Continue");
        row->setPrompt("Are you sure?");
        row->setOkButton("OK");
        row->setCancelButton("Cancel");
        row->setButtonAction(RowTarget::action());
        return row;
    }
    std::shared_ptr<PSConfirmationController> question() const {
        return std::dynamic_pointer_cast<PSConfirmationController>(top());
    }
};

TEST_F(ListTable, aHundredThousandRows_makeNoCellUntilOneIsLookedAt) {
    show(countedRows(100000));
    EXPECT_EQ(100000, list->numberOfRowsInSection(0));
    EXPECT_EQ(70.0, list->tableView_heightForRowAtIndexPath(list->table(), {0, 99999}));
    EXPECT_EQ(nullptr, list->table()->cellForRowAtIndexPath({0, 99999}));
    EXPECT_EQ(0, CountedTestCell::made);
    list->cellAtIndex(100000);
    list->cellAtIndex(100000);
    EXPECT_EQ(1, CountedTestCell::made);
}

TEST_F(ListTable, cell_isLaidOutAtTheScreensWidthAndTheRowsHeight) {
    const auto tall = makeRow("tall");
    tall->setProperty_forKey(64.0, "height");
    show({tall, countedRow("counted"), makeRow("plain")});
    EXPECT_EQ((Rect{0, 0, 390, 64}), required(list->cellAtIndex(0))->frame());
    EXPECT_EQ((Rect{0, 0, 390, 70}), required(list->cellAtIndex(1))->frame());
    const auto plain = required(list->cellAtIndex(2));
    EXPECT_EQ((Rect{0, 0, 390, 44}), plain->frame());
    EXPECT_EQ(16.0, plain->textLabel()->frame().x);
    phone.facts->idiom = 1;
    EXPECT_EQ(768.0, required(list->cellAtIndex(2))->frame().width);
}

TEST_F(ListTable, heightThatIsNone_isTheCellClassesOwn) {
    const auto row = makeRow("row");
    show({row});
    for (const Value& height :
         {Value("64"), Value(0), Value(-5.0), Value(std::numeric_limits<double>::infinity())}) {
        row->setProperty_forKey(height, "height");
        EXPECT_EQ(44.0, list->tableView_heightForRowAtIndexPath(list->table(), {0, 0}))
            << height.description();
    }
    EXPECT_EQ(44.0, list->tableView_estimatedHeightForRowAtIndexPath(list->table(), {0, 0}));
    EXPECT_EQ(0.0, list->tableView_heightForRowAtIndexPath(list->table(), {0, 7}));
}

TEST_F(ListTable, livingCell_isWhatTheTableKnows) {
    show(countedRows(2));
    const auto cell = list->cellAtIndex(2);
    EXPECT_EQ(cell, list->table()->cellForRowAtIndexPath({0, 1}));
    EXPECT_EQ(cell, list->tableView_cellForRowAtIndexPath(list->table(), {0, 1}));
    EXPECT_EQ(nullptr, list->table()->cellForRowAtIndexPath({0, 0}));
    EXPECT_EQ(nullptr, list->table()->cellForRowAtIndexPath({3, 0}));
    EXPECT_EQ(nullptr, list->PSListController::tableView_cellForRowAtIndexPath(list->table(), {0, 9}));
}

TEST_F(ListTable, cells_followTheirRowsWhenOthersComeAndGo) {
    show(countedRows(2));
    const auto cell = list->cellAtIndex(2);
    list->insertSpecifier_atIndex_animated(makeRow("new"), 1, false);
    EXPECT_EQ(cell, list->cellAtIndex(3));
    list->removeSpecifierAtIndex_animated(1, false);
    EXPECT_EQ(cell, list->cellAtIndex(2));
    EXPECT_EQ(1, CountedTestCell::made);
}

TEST_F(ListTable, removedReloadedAndDroppedRows_letTheirCellsGo) {
    show(countedRows(3));
    for (const int index : {1, 2, 3}) list->cellAtIndex(index);
    EXPECT_EQ(3, CountedTestCell::living);
    list->removeSpecifierAtIndex_animated(3, true);
    EXPECT_EQ(2, CountedTestCell::living);
    list->reloadSpecifier(list->specifierAtIndex(2));
    EXPECT_EQ(1, CountedTestCell::living);
    list->reloadSpecifier(nullptr);
    list->table()->selectRowAtIndexPath({0, 0});
    list->reloadSpecifiers();
    EXPECT_EQ(0, CountedTestCell::living) << "the same rows come back, but with no cells";
    EXPECT_FALSE(list->table()->indexPathForSelectedRow().has_value());
}

TEST_F(ListTable, nextLook_showsWhatTheGetterGivesNow) {
    const auto target = std::make_shared<RowTarget>();
    target->stored = false;
    show({makeControlRow("Switch", PSCellType::Switch, target)});
    const auto cell = required(list->cellAtIndex(0));
    target->stored = true;
    EXPECT_EQ(cell, list->cellAtIndex(0));
    EXPECT_EQ(Value(true), cell->controlValue());
}

TEST(DressedList, dressing_isDoneOnceAndStays) {
    const auto screen = std::make_shared<DressingList>();
    doubles::ShownList shown(screen);
    shown.show({makeRow("Calendar", PSCellType::Link)});
    screen->cellAtIndex(0);
    const auto cell = required(screen->cellAtIndex(0));
    EXPECT_EQ(1, screen->dressed);
    EXPECT_EQ("dressed", cell->detailTextLabel()->text());
    EXPECT_EQ(UITableViewCellAccessoryCheckmark, cell->accessoryType());
}

TEST_F(ListTable, groupRow_hasACellOnlyWithAHeaderClass) {
    const auto header = makeGroup("Header");
    header->setProperty_forKey("WidthHeaderTestCell", "headerCellClass");
    const auto broken = makeGroup("Broken");
    broken->setProperty_forKey("NoSuchCell", "headerCellClass");
    show({header, makeGroup("Plain"), broken});
    const auto cell = list->cellAtIndex(0);
    ASSERT_NE(nullptr, cell);
    EXPECT_EQ((Rect{0, 0, 390, 195}), cell->frame()) << "a header says its height for the width itself";
    EXPECT_EQ(cell, list->cellAtIndex(0));
    EXPECT_EQ(nullptr, list->cellAtIndex(1));
    EXPECT_EQ(nullptr, list->cellAtIndex(2));
    EXPECT_EQ(1U, phone.log->lines().size());
}

TEST_F(ListTable, headerCell_isMeasuredAtTheScreensWidthAtEachLook) {
    const auto header = makeGroup("Header");
    header->setProperty_forKey("WidthHeaderTestCell", "headerCellClass");
    phone.facts->idiom = 1;
    show({header});
    const auto cell = required(list->cellAtIndex(0));
    EXPECT_EQ((Rect{0, 0, 768, 384}), cell->frame());
    phone.facts->idiom = 0;
    ASSERT_EQ(cell, list->cellAtIndex(0));
    EXPECT_EQ((Rect{0, 0, 390, 195}), cell->frame());
}

TEST_F(ListTable, linkRow_pushesItsScreenWithTheRowAndItsName) {
    show({makeRow("Miscellaneous", PSCellType::Link, "OpenedTestScreen")});
    EXPECT_TRUE(list->rowCanBeSelected({0, 0}));
    tap(0);
    const auto opened = std::dynamic_pointer_cast<OpenedTestScreen>(navigation->topViewController());
    ASSERT_NE(nullptr, opened);
    EXPECT_EQ(list->specifierAtIndex(0), opened->specifier());
    EXPECT_EQ("Miscellaneous", opened->title());
    EXPECT_EQ(1U, phone.takeEvents("push").size());
}

TEST_F(ListTable, linkRowWhoseScreenWasLeft_isMadeAnewAndNoOther) {
    show({makeRow("Opened", PSCellType::Link, "OpenedTestScreen"), makeRow("Other")});
    const auto opened = list->cellAtIndex(0);
    const auto other = list->cellAtIndex(1);
    tap(0);
    EXPECT_EQ(opened, list->cellAtIndex(0));
    navigation->popViewControllerAnimated(true);
    const auto anew = list->cellAtIndex(0);
    EXPECT_NE(opened, anew);
    EXPECT_EQ(other, list->cellAtIndex(1));
    tap(0);
    list->reloadSpecifiers();
    navigation->popToRootViewControllerAnimated(true);
    EXPECT_NE(anew, list->cellAtIndex(0));
}

TEST_F(ListTable, linkRowOfAnUnknownClass_opensAPlaceholderAndIsLogged) {
    show({makeRow("Gone", PSCellType::Link, "NoSuchScreen"), makeRow("Cell", PSCellType::Link, "PSTableCell"),
          makeRow("View", PSCellType::Link, "UIView")});
    for (const int index : {0, 1, 2}) {
        tap(index);
        EXPECT_EQ("PSPlaceholderController", required(navigation->topViewController())->getClass().name());
        EXPECT_EQ(required(list->specifierAtIndex(index))->name(),
                  required(navigation->topViewController())->title());
        navigation->popViewControllerAnimated(true);
    }
    const auto lines = phone.log->lines();
    ASSERT_EQ(3U, lines.size());
    EXPECT_EQ("PSListController: There is no class named \"NoSuchScreen\".", lines[0]);
}

TEST_F(ListTable, rowsThatOpenNothing_cannotBeSelected) {
    const auto target = std::make_shared<RowTarget>();
    const auto buttonWithoutAction = makeRow("Button", PSCellType::Button);
    show({makeRow("Link", PSCellType::Link), makeRow("Static"),
          makeControlRow("Switch", PSCellType::Switch, target), buttonWithoutAction});
    for (std::int64_t row = 0; row < 4; ++row) {
        EXPECT_FALSE(list->rowCanBeSelected({0, row})) << row;
        tap(row);
    }
    EXPECT_FALSE(list->rowCanBeSelected({0, 4}));
    list->tableView_didSelectRowAtIndexPath(list->table(), {5, 5});
    EXPECT_EQ(1U, navigation->viewControllers().size());
    EXPECT_EQ(navigation, top());
    EXPECT_EQ(0, target->writes);
    EXPECT_TRUE(phone.log->lines().empty());
}

TEST_F(ListTable, buttonRow_sendsItsActionWhileItsTargetLives) {
    auto target = std::make_shared<RowTarget>();
    const auto button = makeControlRow("Button", PSCellType::Button, target);
    button->setButtonAction(RowTarget::action());
    show({button});
    EXPECT_TRUE(list->rowCanBeSelected({0, 0}));
    tap(0);
    EXPECT_EQ(SpecifierList{button}, target->presses);
    target.reset();
    EXPECT_FALSE(list->rowCanBeSelected({0, 0}));
    tap(0);
}

TEST_F(ListTable, confirmationRow_asksFirst) {
    const auto target = std::make_shared<RowTarget>();
    const auto row = confirmation(target);
    show({row});
    EXPECT_TRUE(list->rowCanBeSelected({0, 0}));
    tap(0);
    ASSERT_NE(nullptr, question());
    EXPECT_EQ("Continue", question()->title());
    EXPECT_EQ("Are you sure?", question()->message());
    ASSERT_EQ(2U, question()->actions().size());
    EXPECT_EQ("OK", question()->actions()[0].title);
    EXPECT_EQ(UIAlertActionStyleDefault, question()->actions()[0].style);
    EXPECT_EQ("Cancel", question()->actions()[1].title);
    EXPECT_EQ(UIAlertActionStyleCancel, question()->actions()[1].style);
    EXPECT_TRUE(target->presses.empty());
    question()->choose(0);
    EXPECT_EQ(SpecifierList{row}, target->presses);
    EXPECT_EQ(navigation, top());
}

TEST_F(ListTable, cancelledConfirmation_sendsNothing) {
    const auto target = std::make_shared<RowTarget>();
    const auto row = confirmation(target);
    row->setProperty_forKey(true, "isDestructive");
    show({row});
    tap(0);
    EXPECT_EQ(UIAlertActionStyleDestructive, required(question())->actions()[0].style);
    required(question())->choose(1);
    EXPECT_TRUE(target->presses.empty());
    EXPECT_EQ(navigation, top());
}

TEST_F(ListTable, screenOnNoStack_opensNothingAndLogsIt) {
    const auto alone = std::make_shared<doubles::GivenList>();
    alone->given = {makeRow("Link", PSCellType::Link, "OpenedTestScreen")};
    alone->tableView_didSelectRowAtIndexPath(alone->table(), {0, 0});
    EXPECT_EQ(1U, phone.log->lines().size());
}

TEST_F(ListTable, closedScreen_isFreedWithItsTableCellsAndQuestion) {
    const auto target = std::make_shared<RowTarget>();
    auto pushed = std::make_shared<doubles::GivenList>();
    pushed->given = countedRows(3);
    pushed->given.push_back(confirmation(target));
    pushed->given.push_back(makeControlRow("own", PSCellType::EditText, target));
    pushed->given.back()->setTarget(pushed);
    show({});
    navigation->pushViewController_animated(pushed, true);
    for (std::int64_t index = 0; index < 6; ++index) pushed->cellAtIndex(index);
    pushed->tableView_didSelectRowAtIndexPath(pushed->table(), {0, 3});
    ASSERT_NE(nullptr, question());
    const std::weak_ptr<PSListController> gone = pushed;
    const std::weak_ptr<UITableView> goneTable = pushed->table();
    pushed.reset();
    navigation->popViewControllerAnimated(true);
    EXPECT_TRUE(gone.expired());
    EXPECT_TRUE(goneTable.expired());
    EXPECT_EQ(0, CountedTestCell::living);
}

TEST_F(ListTable, setterThatRebuildsTheRows_mayDropTheCellThatIsMoved) {
    class Rebuilding : public RowTarget {
      public:
        void rebuild(const Value& value, const std::shared_ptr<PSSpecifier>& /*row*/) {
            stored = value;
            required(list.lock())->reloadSpecifiers();
        }
        std::weak_ptr<PSListController> list;
    };
    const auto target = std::make_shared<Rebuilding>();
    target->list = list;
    show({});
    for (const auto type : {PSCellType::Switch, PSCellType::Slider, PSCellType::EditText}) {
        const auto row = makeControlRow("Row", type, target);
        row->setSetter(method("rebuild:specifier:", &Rebuilding::rebuild));
        list->given = {row};
        list->reloadSpecifiers();
        const Value value = type == PSCellType::Switch   ? Value(true)
                            : type == PSCellType::Slider ? Value(0.5)
                                                         : Value("text");
        EXPECT_TRUE(required(list->cellAtIndex(0))->userMovedControl(value).has_value());
        EXPECT_EQ(value, target->stored);
        EXPECT_EQ(value, required(list->cellAtIndex(0))->controlValue());
        target->stored = nullptr;
    }
}

TEST_F(ListTable, editing_isNothingForAPlainList) {
    show({makeRow("a")});
    EXPECT_EQ(UITableViewCellEditingStyleNone,
              list->tableView_editingStyleForRowAtIndexPath(list->table(), {0, 0}));
    list->tableView_commitEditingStyle_forRowAtIndexPath(list->table(), UITableViewCellEditingStyleDelete,
                                                         {0, 0});
    EXPECT_EQ(1U, list->names().size());
}

}  // namespace
}  // namespace platform
