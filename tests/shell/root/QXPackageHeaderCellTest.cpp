// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "shell/root/QXPackageHeaderCell.h"
#include "tests/doubles/PluginPhone.h"
#include "tests/doubles/Required.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::PSSpecifier;

class HeaderCell : public testing::Test {
  protected:
    std::shared_ptr<QXPackageHeaderCell> makeCell() {
        const auto row = PSSpecifier::emptyGroupSpecifier();
        row->setProperty_forKey("Quietrix Go", "title");
        row->setProperty_forKey("Silence your iDevice without noice!!", "subTitle");
        const auto cell = std::dynamic_pointer_cast<QXPackageHeaderCell>(
            platform::PSTableCell::makeCellOfClass("QXPackageHeaderCell", row));
        if (cell) cell->layoutIfNeeded();
        return cell;
    }

    doubles::PluginPhone phone_;
};

TEST_F(HeaderCell, onAPhone_hasThePatternAsItsOwnBackground) {
    const auto cell = makeCell();
    ASSERT_NE(nullptr, cell);
    const auto color = cell->backgroundColor();
    ASSERT_NE(nullptr, color);
    EXPECT_EQ("nav", required(color->patternImage())->name());
    EXPECT_EQ(0.85, color->alpha());
}

TEST_F(HeaderCell, onAPad_hasAViewBehindItsContents) {
    phone_.facts->idiom = 1;
    const auto cell = makeCell();
    ASSERT_NE(nullptr, cell);
    EXPECT_EQ(nullptr, cell->backgroundColor());
    const auto background = cell->subviews().at(0);
    EXPECT_EQ(-40, background->frame().x);
    EXPECT_EQ(0, background->frame().y);
    EXPECT_EQ(cell->frame().width + 40, background->frame().width);
    EXPECT_EQ(cell->preferredHeightForWidth(background->frame().width), background->frame().height);
    EXPECT_EQ(2U, background->autoresizingMask());
    ASSERT_NE(nullptr, background->backgroundColor());
    EXPECT_EQ(0.85, background->backgroundColor()->alpha());
}

TEST_F(HeaderCell, onADeviceThatDoesNotKnowItsIdiom_looksAsOnAPhone) {
    phone_.facts->idiom = std::nullopt;
    EXPECT_NE(nullptr, required(makeCell())->backgroundColor());
}

TEST_F(HeaderCell, laidOut_hasWhiteTextOnClear) {
    const auto label = required(makeCell())->textLabel();
    EXPECT_EQ("Quietrix Go", label->text());
    EXPECT_TRUE(required(label->textColor())->isEqual(*platform::UIColor::whiteColor()));
    EXPECT_TRUE(required(label->backgroundColor())->isEqual(*platform::UIColor::clearColor()));
}

TEST_F(HeaderCell, withoutTheColourImage_hasNoBackground) {
    phone_.removePluginBundle();
    EXPECT_EQ(nullptr, required(makeCell())->backgroundColor());
}

}  // namespace
}  // namespace quietrix
