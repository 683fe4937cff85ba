// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "platform/foundation/KeyValueCoding.h"
#include "settings/state/RowWriter.h"
#include "tests/doubles/Required.h"
#include "tests/settings/TestList.h"

namespace {

using doubles::required;
using fixtures::Desk;
using fixtures::plainRow;
using platform::Array;
using platform::Dictionary;
using platform::PSCellType;
using platform::UIColor;
using platform::Value;

class Record : public platform::Object, public platform::KeyValueCoding {
    PLATFORM_CLASS(Record, platform::Object)

  public:
    Value valueForKey(std::string_view key) const override {
        return key == "identifier" ? Value("R-1") : Value();
    }
    void setValue_forKey(const Value& /*value*/, std::string_view /*key*/) override {}
};

PLATFORM_REGISTER_CLASS(Record)

Value onlyRow(Desk& desk, const std::shared_ptr<platform::PSSpecifier>& specifier) {
    desk.list->setRows({specifier});
    return Desk::rows(desk.answer(R"({"do":"state"})")).at(0);
}

TEST(RowWriter, userInfo_showsIdentifierOrKeys) {
    Desk desk;
    const auto row = plainRow("Row", PSCellType::Link);
    row->setUserInfo(std::make_shared<Record>());
    EXPECT_EQ(onlyRow(desk, row)["userInfo"], Value(Dictionary{{"class", "Record"}, {"identifier", "R-1"}}));
    row->setUserInfo(Dictionary{{"profile", std::make_shared<Record>()}, {"calendars", Array{}}});
    EXPECT_EQ(onlyRow(desk, row)["userInfo"], Value(Dictionary{{"keys", Array{"calendars", "profile"}}}));
    row->setUserInfo(nullptr);
    EXPECT_TRUE(onlyRow(desk, row)["userInfo"].isNil());
}

TEST(RowWriter, properties_leaveOutClassAndLabelAndPlainlyShowObjects) {
    Desk desk;
    const auto row = plainRow("Row", PSCellType::StaticText);
    row->setProperty_forKey("CountedCell", "cellClass");
    row->setProperty_forKey(UIColor::redColor(), "colour");
    row->setProperty_forKey(std::numeric_limits<double>::infinity(), "max");
    row->setProperty_forKey(false, "flag");
    const Value written = onlyRow(desk, row);
    EXPECT_EQ(written["cellClass"], Value("CountedCell"));
    EXPECT_EQ(written["properties"],
              Value(Dictionary{
                  {"colour", Dictionary{{"swatch", "#ff0000ff"}}}, {"max", nullptr}, {"flag", false}}));
}

TEST(RowWriter, rowAheadOfTheFirstGroup_isInTheFirstSection) {
    Desk desk;
    desk.list->setRows({plainRow("A", PSCellType::StaticText),
                        platform::PSSpecifier::groupSpecifierWithName("G"),
                        plainRow("B", PSCellType::StaticText)});
    const Value answer = desk.answer(R"({"do":"state"})");
    const Array& rows = Desk::rows(answer);
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0]["section"], Value(0));
    EXPECT_EQ(rows[0]["row"], Value(0));
    EXPECT_EQ(rows[1]["section"], Value(1));
    EXPECT_TRUE(rows[1]["row"].isNil());
    EXPECT_EQ(rows[2]["section"], Value(1));
    EXPECT_EQ(rows[2]["row"], Value(0));
}

TEST(RowWriter, ownLabels_areWrittenWithTheirLook) {
    Desk desk;
    const auto row = plainRow("Row", PSCellType::StaticText);
    desk.list->setRows({row});
    const auto label = std::make_shared<platform::UILabel>(platform::Rect{1, 2, 3.5, 4});
    label->setTag(7);
    label->setText("Own");
    label->setTextColor(UIColor::redColor());
    label->setTextAlignment(platform::NSTextAlignmentRight);
    required(desk.list->cellAtIndex(0))->contentView()->addSubview(label);
    const Value answer = desk.answer(R"({"do":"state"})");
    EXPECT_EQ(Desk::rows(answer).at(0)["labels"], Value(Array{Dictionary{{"tag", 7},
                                                                         {"text", "Own"},
                                                                         {"frame", Array{1, 2, 3.5, 4}},
                                                                         {"colour", "#ff0000ff"},
                                                                         {"alignment", 2}}}));
}

TEST(RowWriter, colours_areBoundedAndRounded) {
    Desk desk;
    const auto row = plainRow("Row", PSCellType::StaticText);
    desk.list->setRows({row});
    required(desk.list->cellAtIndex(0))
        ->setBackgroundColor(
            UIColor::colorWithRed_green_blue_alpha(2, -1, 0.5, std::numeric_limits<double>::quiet_NaN()));
    const Value answer = desk.answer(R"({"do":"state"})");
    const std::string colour = Desk::rows(answer).at(0)["background"].stringOr();
    ASSERT_EQ(colour.size(), 9U);
    EXPECT_EQ(colour.substr(0, 7), "#ff0080");
}

}  // namespace
