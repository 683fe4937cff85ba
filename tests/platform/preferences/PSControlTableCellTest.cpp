// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "platform/preferences/PSControlTableCell.h"
#include "platform/preferences/PSEditableTableCell.h"
#include "platform/preferences/PSSliderTableCell.h"
#include "platform/preferences/PSSwitchTableCell.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/ShownList.h"

namespace platform {
namespace {

using doubles::errorOf;
using doubles::makeControlRow;
using doubles::makeRow;
using doubles::required;
using doubles::RowTarget;

class ControlCells : public testing::Test {
  protected:
    std::shared_ptr<PSSpecifier> rowOf(PSCellType type) { return makeControlRow("Row", type, target_); }
    static std::shared_ptr<PSTableCell> laidOut(const std::shared_ptr<PSSpecifier>& row, double height) {
        auto cell = required(PSTableCell::makeCell(row));
        cell->setFrame({0, 0, 390, height});
        cell->layoutIfNeeded();
        return cell;
    }

    doubles::Phone phone_;
    std::shared_ptr<RowTarget> target_ = std::make_shared<RowTarget>();
};

TEST_F(ControlCells, switch_showsItsRowsValueAsATruth) {
    target_->stored = 1;
    const auto row = rowOf(PSCellType::Switch);
    const auto cell = required(PSTableCell::makeCell(row));
    EXPECT_EQ(Value(true), cell->controlValue());
    target_->stored = "text";
    cell->refreshCellContentsWithSpecifier(row);
    EXPECT_EQ(Value(false), cell->controlValue());
    target_->stored = nullptr;
    row->setProperty_forKey(true, "default");
    cell->refreshCellContentsWithSpecifier(row);
    EXPECT_EQ(Value(true), cell->controlValue());
}

TEST_F(ControlCells, switchWithoutAGetter_staysAsItWasSet) {
    const auto row = makeRow("Network", PSCellType::Switch);
    const auto cell = required(std::dynamic_pointer_cast<PSSwitchTableCell>(PSTableCell::makeCell(row)));
    cell->setOn(true);
    cell->refreshCellContentsWithSpecifier(row);
    EXPECT_EQ(Value(true), cell->controlValue());
}

TEST_F(ControlCells, movedSwitch_writesOnceAndSetOnNever) {
    const auto row = rowOf(PSCellType::Switch);
    const auto cell = required(std::dynamic_pointer_cast<PSSwitchTableCell>(PSTableCell::makeCell(row)));
    cell->setOn(true);
    EXPECT_EQ(0, target_->writes);
    ASSERT_TRUE(cell->userMovedControl(false).has_value());
    EXPECT_EQ(1, target_->writes);
    EXPECT_EQ(Value(false), target_->stored);
    EXPECT_FALSE(cell->switchControl()->isOn());
}

TEST_F(ControlCells, valuesOfAnotherType_areRefusedAndWriteNothing) {
    const auto toggle = required(PSTableCell::makeCell(rowOf(PSCellType::Switch)));
    const auto slider = required(PSTableCell::makeCell(rowOf(PSCellType::Slider)));
    const auto field = required(PSTableCell::makeCell(rowOf(PSCellType::EditText)));
    EXPECT_EQ("A switch takes true or false, not 1.", errorOf(toggle->userMovedControl(1)));
    EXPECT_FALSE(toggle->userMovedControl(nullptr).has_value());
    EXPECT_FALSE(slider->userMovedControl(true).has_value());
    EXPECT_FALSE(slider->userMovedControl("0.5").has_value());
    EXPECT_EQ("A slider takes a number, not nan.", errorOf(slider->userMovedControl(std::nan(""))));
    EXPECT_EQ("A text field takes a text, not 5.", errorOf(field->userMovedControl(5)));
    EXPECT_EQ(0, target_->writes);
}

TEST_F(ControlCells, disabledControl_cannotBeMoved) {
    for (const auto type : {PSCellType::Switch, PSCellType::Slider, PSCellType::EditText}) {
        const auto cell =
            required(std::dynamic_pointer_cast<PSControlTableCell>(PSTableCell::makeCell(rowOf(type))));
        cell->control()->setEnabled(false);
        for (const Value& value : {Value(true), Value(0.5), Value("text")}) {
            EXPECT_EQ("The row \"Row\" is disabled.", errorOf(cell->userMovedControl(value)));
        }
    }
    EXPECT_EQ(0, target_->writes);
}

TEST_F(ControlCells, switch_standsAtTheRightInTheRowsMiddle) {
    const auto cell = laidOut(rowOf(PSCellType::Switch), 44);
    EXPECT_EQ((Rect{390 - 16 - 51, 6.5, 51, 31}), cell->controlView()->frame());
    EXPECT_EQ((Rect{16, 0, 299, 44}), cell->textLabel()->frame());
}

TEST_F(ControlCells, slider_takesRangeImagesAndValueFromItsRow) {
    const auto row = rowOf(PSCellType::Slider);
    const auto left = std::make_shared<UIImage>();
    const auto right = std::make_shared<UIImage>();
    row->setProperty_forKey(2, "min");
    row->setProperty_forKey(4.5, "max");
    row->setProperty_forKey(left, "leftImage");
    row->setProperty_forKey(right, "rightImage");
    target_->stored = 3;
    const auto cell = required(std::dynamic_pointer_cast<PSSliderTableCell>(PSTableCell::makeCell(row)));
    EXPECT_EQ(2.0, cell->slider()->minimumValue());
    EXPECT_EQ(4.5, cell->slider()->maximumValue());
    EXPECT_EQ(left, cell->slider()->minimumValueImage());
    EXPECT_EQ(right, cell->slider()->maximumValueImage());
    EXPECT_EQ(Value(3.0), cell->controlValue());
}

TEST_F(ControlCells, movedSlider_writesARealWithinTheRange) {
    const auto cell = required(PSTableCell::makeCell(rowOf(PSCellType::Slider)));
    ASSERT_TRUE(cell->userMovedControl(0.25).has_value());
    EXPECT_EQ(Value(0.25), target_->stored);
    ASSERT_TRUE(cell->userMovedControl(7).has_value());
    EXPECT_EQ(Value(1.0), target_->stored);
    EXPECT_EQ(2, target_->writes);
}

TEST_F(ControlCells, sliderAndTitle_areBothAroundTheRowsMiddleAtEveryLayout) {
    const auto cell = laidOut(rowOf(PSCellType::Slider), 70);
    const auto checkMiddle = [](const Rect& frame) { EXPECT_EQ(35.0, frame.y + frame.height / 2); };
    for (int pass = 0; pass < 2; ++pass) {
        checkMiddle(cell->textLabel()->frame());
        checkMiddle(cell->controlView()->frame());
        EXPECT_TRUE(cell->textLabel()->isHidden());
        cell->textLabel()->setHidden(false);
        cell->textLabel()->setFrame({0, 0, 1, 1});
        cell->controlView()->setFrame({0, 0, 1, 1});
        cell->setNeedsLayout();
        cell->layoutIfNeeded();
    }
}

TEST_F(ControlCells, sliderAndTitleMovedApartByFifteenPoints_fitARowOfSeventyWithoutOverlap) {
    const auto cell = laidOut(rowOf(PSCellType::Slider), 70);
    const Rect title = cell->textLabel()->frame();
    const Rect slider = cell->controlView()->frame();
    EXPECT_GE(title.y - 15, 0.0);
    EXPECT_LE(title.y - 15 + title.height, slider.y + 15);
    EXPECT_LE(slider.y + 15 + slider.height, 70.0);
}

TEST_F(ControlCells, textField_showsTheValuePropertyElseTheGetters) {
    const auto row = rowOf(PSCellType::EditText);
    row->setProperty_forKey("Required", "placeholder");
    target_->stored = "from the getter";
    const auto cell = required(std::dynamic_pointer_cast<PSEditableTableCell>(PSTableCell::makeCell(row)));
    EXPECT_EQ("from the getter", cell->textField()->text());
    EXPECT_EQ("Required", cell->textField()->placeholder());
    row->setProperty_forKey("from the row", "value");
    cell->refreshCellContentsWithSpecifier(row);
    EXPECT_EQ("from the row", cell->textField()->text());
    EXPECT_EQ(Value("from the row"), cell->controlValue());
}

TEST_F(ControlCells, typedText_isWrittenOnceWhenItChanged) {
    const auto row = rowOf(PSCellType::EditText);
    row->setProperty_forKey("Work", "value");
    const auto cell = required(std::dynamic_pointer_cast<PSEditableTableCell>(PSTableCell::makeCell(row)));
    ASSERT_TRUE(cell->userMovedControl("Work").has_value());
    EXPECT_EQ(0, target_->writes) << "the same text is no change";
    ASSERT_TRUE(cell->userMovedControl("Büro").has_value());
    EXPECT_EQ(1, target_->writes);
    EXPECT_EQ(Value("Büro"), target_->stored);
    EXPECT_FALSE(cell->textField()->isFirstResponder());
    cell->refreshCellContentsWithSpecifier(row);
    EXPECT_EQ("Büro", cell->textField()->text()) << "the row does not fall back to its old text";
}

TEST_F(ControlCells, textThatNobodyTakes_leavesTheRowsValue) {
    const auto row = makeRow("Title", PSCellType::EditText);
    row->setProperty_forKey("Work", "value");
    const auto cell = required(PSTableCell::makeCell(row));
    ASSERT_TRUE(cell->userMovedControl("other").has_value());
    EXPECT_EQ(Value("Work"), row->propertyForKey("value"));
}

TEST_F(ControlCells, textBeingTyped_isNotTakenAwayByARefresh) {
    const auto row = rowOf(PSCellType::EditText);
    const auto cell = required(std::dynamic_pointer_cast<PSEditableTableCell>(PSTableCell::makeCell(row)));
    cell->textField()->becomeFirstResponder();
    cell->textField()->setText("half");
    cell->refreshCellContentsWithSpecifier(row);
    EXPECT_EQ("half", cell->textField()->text());
    cell->textField()->resignFirstResponder();
    EXPECT_EQ(Value("half"), target_->stored);
}

TEST_F(ControlCells, fieldThatOutlivesItsCell_tellsNobody) {
    auto cell = required(
        std::dynamic_pointer_cast<PSEditableTableCell>(PSTableCell::makeCell(rowOf(PSCellType::EditText))));
    const auto field = cell->textField();
    cell.reset();
    field->becomeFirstResponder();
    field->setText("x");
    field->resignFirstResponder();
    EXPECT_EQ(0, target_->writes);
}

TEST_F(ControlCells, titleAndField_shareTheLine) {
    const auto cell = laidOut(rowOf(PSCellType::EditText), 44);
    const Rect title = cell->textLabel()->frame();
    const Rect field = cell->controlView()->frame();
    EXPECT_LE(title.x + title.width, field.x);
    EXPECT_EQ(390.0 - 16.0, field.x + field.width);
    const auto untitled = rowOf(PSCellType::EditText);
    untitled->setName(std::nullopt);
    EXPECT_EQ(16.0, laidOut(untitled, 44)->controlView()->frame().x);
}

TEST_F(ControlCells, ownTargetsOfTheControl_areToldAfterTheRow) {
    class Watcher : public Object {
      public:
        explicit Watcher(RowTarget& row) : row_(row) {}
        void moved(const std::shared_ptr<Object>& /*sender*/) { seen = row_.writes; }
        int seen = -1;

      private:
        RowTarget& row_;
    };
    const auto watcher = std::make_shared<Watcher>(*target_);
    const auto cell = required(
        std::dynamic_pointer_cast<PSSwitchTableCell>(PSTableCell::makeCell(rowOf(PSCellType::Switch))));
    cell->control()->addTarget_action_forControlEvents(watcher, method("moved:", &Watcher::moved),
                                                       UIControlEventValueChanged);
    ASSERT_TRUE(cell->userMovedControl(true).has_value());
    EXPECT_EQ(1, watcher->seen);
}

TEST_F(ControlCells, replacedControl_leavesTheContentView) {
    const auto cell = std::make_shared<PSControlTableCell>(0, "", nullptr);
    const auto before = cell->contentView()->subviews().size();
    cell->setControl(std::make_shared<UISwitch>());
    cell->setControl(std::make_shared<UISlider>());
    EXPECT_EQ(before + 1, cell->contentView()->subviews().size());
    cell->setControl(nullptr);
    EXPECT_EQ(before, cell->contentView()->subviews().size());
    EXPECT_EQ(nullptr, cell->controlView());
}

}  // namespace
}  // namespace platform
