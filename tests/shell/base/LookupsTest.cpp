// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "shell/base/Lookups.h"
#include "tests/doubles/PluginPhone.h"
#include "tests/doubles/Rows.h"

namespace quietrix {
namespace {

using platform::PSSpecifier;
using platform::PSViewController;

std::shared_ptr<PSSpecifier> row(const char* name, const char* identifier = nullptr) {
    const auto specifier = doubles::makeRow(name);
    if (identifier) specifier->setIdentifier(identifier);
    return specifier;
}

class Lookups : public testing::Test {
  protected:
    doubles::PluginPhone phone_;
    PSViewController screen_;
};

TEST_F(Lookups, twoLabelsThatDifferInCase_giveTheLater) {
    const platform::SpecifierList rows{row("Title"), row("title"), row("Other")};
    EXPECT_EQ(1, vm__identifierIndex_identifier(screen_, rows, "TITLE"));
    EXPECT_EQ(rows[1], vm__specifierForIdentifier_identifier(screen_, rows, "TITLE"));
}

TEST_F(Lookups, labelWithOtherLetters_isFoundIgnoringCase) {
    const platform::SpecifierList rows{row("\u00DCber")};
    EXPECT_EQ(0, vm__identifierIndex_identifier(screen_, rows, "\u00FCBER"));
}

TEST_F(Lookups, rowWithoutLabel_isNeverFoundByLabel) {
    const platform::SpecifierList rows{PSSpecifier::emptyGroupSpecifier()};
    EXPECT_EQ(-1, vm__identifierIndex_identifier(screen_, rows, ""));
    EXPECT_EQ(nullptr, vm__specifierForIdentifier_identifier(screen_, rows, ""));
}

TEST_F(Lookups, twoRowsOfOneIdentifier_giveTheLast) {
    const platform::SpecifierList rows{row("A", "title"), row("B", "title"), row("C")};
    EXPECT_EQ(1, vm__indexByIdentifier_identifier(screen_, rows, "title"));
    EXPECT_EQ(rows[1], vm__specifierByIdentifier_identifier(screen_, rows, "title"));
}

TEST_F(Lookups, identifierOfAnotherCase_isNotFound) {
    const platform::SpecifierList rows{row("A", "title")};
    EXPECT_EQ(-1, vm__indexByIdentifier_identifier(screen_, rows, "Title"));
    EXPECT_EQ(nullptr, vm__specifierByIdentifier_identifier(screen_, rows, "Title"));
}

TEST_F(Lookups, emptyList_givesNothing) {
    EXPECT_EQ(-1, vm__indexByIdentifier_identifier(screen_, {}, "title"));
    EXPECT_EQ(nullptr, vm__specifierForIdentifier_identifier(screen_, {}, "title"));
}

TEST_F(Lookups, realNavigationController_isTheOutermost) {
    const auto screen = std::make_shared<PSViewController>();
    EXPECT_EQ(nullptr, __vmRealNavigationController(*screen));
    const auto inner = platform::UINavigationController::initWithRootViewController(screen);
    EXPECT_EQ(inner, __vmRealNavigationController(*screen));
    const auto outer = std::make_shared<platform::UINavigationController>();
    inner->setParentViewController(outer);
    EXPECT_EQ(outer, __vmRealNavigationController(*screen));
}

}  // namespace
}  // namespace quietrix
