// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/preferences/PSConfirmationSpecifier.h"
#include "platform/preferences/PSSpecifier.h"
#include "tests/doubles/ShownList.h"

namespace platform {
namespace {

using doubles::makeControlRow;
using doubles::makeRow;
using doubles::RowTarget;

TEST(PSSpecifier, factory_setsEverythingItIsGiven) {
    const auto target = std::make_shared<RowTarget>();
    const auto row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        "Active Hours", target, RowTarget::setter(), RowTarget::getter(), "Detail", PSCellType::Link, "Pane");
    EXPECT_EQ("Active Hours", row->name());
    EXPECT_EQ(Value("Active Hours"), row->propertyForKey("label"));
    EXPECT_EQ(target, row->target());
    EXPECT_EQ("setPreferenceValue:specifier:", row->setter().selector());
    EXPECT_EQ("preferenceValue:", row->getter().selector());
    EXPECT_EQ("Detail", row->detailControllerClass());
    EXPECT_EQ("Pane", row->editPaneClass());
    EXPECT_EQ(PSCellType::Link, row->cellType());
    EXPECT_FALSE(row->identifier().has_value());
    EXPECT_FALSE(row->isGroup());
}

TEST(PSSpecifier, groups_haveANameOrNone) {
    const auto named = PSSpecifier::groupSpecifierWithName("About");
    const auto empty = PSSpecifier::emptyGroupSpecifier();
    EXPECT_TRUE(named->isGroup());
    EXPECT_EQ("About", named->name());
    EXPECT_TRUE(empty->isGroup());
    EXPECT_FALSE(empty->name().has_value());
    EXPECT_TRUE(empty->properties().empty());
}

TEST(PSSpecifier, key_isOneSpecifiersOwn) {
    EXPECT_NE(makeRow("a")->key(), makeRow("a")->key());
}

TEST(PSSpecifier, label_followsTheName) {
    const auto row = makeRow("a");
    row->setName("b");
    EXPECT_EQ(Value("b"), row->propertyForKey("label"));
    row->setName(std::nullopt);
    EXPECT_TRUE(row->propertyForKey("label").isNil());
}

TEST(PSSpecifier, nilProperty_removesIt) {
    const auto row = makeRow("a");
    row->setProperty_forKey(1.0, "max");
    EXPECT_EQ(Value(1.0), row->propertyForKey("max"));
    row->setProperty_forKey(nullptr, "max");
    row->setProperty_forKey(nullptr, "never set");
    EXPECT_FALSE(row->properties().contains("max"));
    EXPECT_TRUE(row->propertyForKey("max").isNil());
}

TEST(PSSpecifier, getter_givesTheDefaultForNilOnly) {
    const auto target = std::make_shared<RowTarget>();
    const auto row = makeControlRow("a", PSCellType::Switch, target);
    row->setProperty_forKey(true, "default");
    EXPECT_EQ(Value(true), row->performGetter());
    target->stored = false;
    EXPECT_EQ(Value(false), row->performGetter());
}

TEST(PSSpecifier, withoutAGetterOrATarget_theValueIsNil) {
    auto target = std::make_shared<RowTarget>();
    const auto row = makeControlRow("a", PSCellType::Switch, target);
    row->setProperty_forKey(true, "default");
    target.reset();
    EXPECT_TRUE(row->performGetter().isNil()) << "the target is held weakly";
    EXPECT_FALSE(row->performSetterWithValue(true));
    const auto plain = makeRow("b");
    plain->setTarget(std::make_shared<RowTarget>());
    plain->setProperty_forKey(true, "default");
    EXPECT_TRUE(plain->performGetter().isNil());
}

TEST(PSSpecifier, setterAndAction_getTheRow) {
    const auto target = std::make_shared<RowTarget>();
    const auto row = makeControlRow("a", PSCellType::Button, target);
    EXPECT_TRUE(row->performSetterWithValue(0.5));
    EXPECT_EQ(Value(0.5), target->stored);
    EXPECT_EQ(SpecifierList{row}, target->written);
    EXPECT_FALSE(row->performButtonAction());
    row->setButtonAction(RowTarget::action());
    EXPECT_TRUE(row->performButtonAction());
    EXPECT_EQ(SpecifierList{row}, target->presses);
}

TEST(PSConfirmationSpecifier, factory_makesAConfirmation) {
    const auto target = std::make_shared<RowTarget>();
    const auto row = PSConfirmationSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        "Reset", target, {}, {}, {}, PSCellType::Button, {});
    EXPECT_EQ("Reset", row->name());
    EXPECT_EQ(target, row->target());
    EXPECT_EQ(PSCellType::Button, row->cellType());
    EXPECT_EQ("PSConfirmationSpecifier", row->getClass().name());
}

}  // namespace
}  // namespace platform
