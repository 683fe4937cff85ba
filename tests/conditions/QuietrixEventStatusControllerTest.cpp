// SPDX-License-Identifier: MIT
#include "conditions/eventstatus/QXEventStatusTableCell.h"
#include "conditions/eventstatus/QuietrixEventStatusController.h"
#include "platform/uikit/UILabel.h"
#include "shell/base/Localization.h"
#include "shell/base/NotificationNames.h"
#include "tests/conditions/PickerFixture.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::PSCellType;

class EventStatusPicker : public ListPickerFixture<QuietrixEventStatusController> {
  protected:
    /// The titles of the rows that carry a checkmark.
    std::string checked() {
        std::string titles;
        for (const auto& row : ownRows()) {
            const std::string title = row->identifier().value_or("");
            if (isChecked(title)) titles += (titles.empty() ? "" : ", ") + title;
        }
        return titles;
    }
};

TEST_F(EventStatusPicker, rows_areTheFourStatusesInTheOrderOfTheirValues) {
    open();
    const std::vector<std::string> titles{"All", "Accepted", "Tentative", "Declined/Cancelled"};
    const auto rows = ownRows();
    ASSERT_EQ(titles.size(), rows.size());
    for (std::size_t index = 0; index < titles.size(); ++index) {
        const auto& row = *rows[index];
        EXPECT_EQ(titles[index], row.name());
        EXPECT_EQ(titles[index], row.identifier());
        EXPECT_EQ(PSCellType::StaticText, row.cellType());
        EXPECT_EQ("QXEventStatusTableCell", row.propertyForKey("cellClass").stringOr());
        EXPECT_FALSE(row.setter());
        EXPECT_FALSE(row.getter());
        EXPECT_EQ("", row.detailControllerClass());
        EXPECT_TRUE(row.userInfo().isNil());
    }
}

TEST_F(EventStatusPicker, statusTwo_opensWithTheCheckmarkOnTentativeOnly) {
    profile_->setApplyProfileEventStatus(2);
    open();
    EXPECT_EQ("Tentative", checked());
}

TEST_F(EventStatusPicker, chosen_movesTheCheckmarkAndStoresTheValue) {
    profile_->setApplyProfileEventStatus(2);
    open();
    ASSERT_EQ("Tentative", checked());
    tap("Declined/Cancelled");
    EXPECT_EQ("Declined/Cancelled", checked());
    EXPECT_EQ(std::nullopt, screen_->table()->indexPathForSelectedRow());
    EXPECT_EQ(3, profile_->applyProfileEventStatus());
    EXPECT_EQ(1U, storeCalls());
    EXPECT_EQ(3, required(stored())->applyProfileEventStatus());
}

TEST_F(EventStatusPicker, chosenAgain_keepsTheCheckmarkAndSavesOnceMore) {
    profile_->setApplyProfileEventStatus(1);
    open();
    tap("Accepted");
    EXPECT_EQ("Accepted", checked());
    EXPECT_EQ(1U, storeCalls());
}

TEST_F(EventStatusPicker, statusWithoutATitle_leavesTwoCheckmarksUntilRedrawn) {
    profile_->setApplyProfileEventStatus(1);
    open();
    ASSERT_EQ("Accepted", checked());
    profile_->setApplyProfileEventStatus(9);
    tap("All");
    EXPECT_EQ("All, Accepted", checked());
    screen_->reloadSpecifiers();
    EXPECT_EQ("All", checked());
}

TEST_F(EventStatusPicker, newProfile_isChangedInMemoryOnly) {
    profile_->setNewProfile(true);
    open();
    tap("Declined/Cancelled");
    EXPECT_EQ(3, profile_->applyProfileEventStatus());
    EXPECT_EQ(0U, storeCalls());
}

TEST_F(EventStatusPicker, otherLanguage_knowsTheRowsByItsTitles) {
    phone_.facts->languages = {"de"};
    profile_->setApplyProfileEventStatus(2);
    open();
    EXPECT_EQ("Vorläufig", checked());
    tap("Abgelehnt/Abgesagt");
    EXPECT_EQ(3, required(stored())->applyProfileEventStatus());
    EXPECT_EQ("Abgelehnt/Abgesagt", checked());
}

TEST_F(EventStatusPicker, cells_showTheirTitleInALabelOfTheirOwn) {
    open();
    const auto cell = cellOf("Tentative");
    EXPECT_TRUE(cell->isUserInteractionEnabled());
    EXPECT_TRUE(cell->textLabel()->isUserInteractionEnabled());
    EXPECT_EQ(std::nullopt, cell->textLabel()->text());
    EXPECT_TRUE(required(cell->textLabel()->textColor())->isEqual(*platform::UIColor::redColor()));
    EXPECT_EQ(2, cell->tag());
    ASSERT_NE(nullptr, required(cell->tintColor())->patternImage());
    EXPECT_EQ("nav", required(cell->tintColor())->patternImage()->name());
    const auto label = std::dynamic_pointer_cast<platform::UILabel>(cell->viewWithTag(123123));
    ASSERT_NE(nullptr, label);
    EXPECT_EQ(cell, label->superview());
    EXPECT_EQ("Tentative", label->text());
    EXPECT_EQ(cell->tintColor(), label->textColor());
    EXPECT_EQ(cell->textLabel()->fontSize(), label->fontSize());
    EXPECT_EQ((platform::Rect{15, 0, cell->bounds().width - 40, cell->bounds().height}), label->frame());
}

TEST_F(EventStatusPicker, failedSave_showsTheErrorAndKeepsTheChoice) {
    open();
    failWrites();
    tap("Accepted");
    phone_.drain();
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Error", alert()->title());
    EXPECT_EQ("Accepted", checked());
    EXPECT_EQ(1, profile_->applyProfileEventStatus());
}

TEST_F(EventStatusPicker, appliedStateChanged_isNotItsBusiness) {
    open();
    storeElsewhere("applyProfileEventStatus", 3);
    post(ProfileAppliedStateChangedNotification);
    EXPECT_EQ(profile_, shown());
}

TEST_F(EventStatusPicker, chrome_isTheProducts) {
    open();
    expectProductsChrome();
}

TEST_F(EventStatusPicker, closed_isNotKeptAlive) {
    open();
    tap("Accepted");
    EXPECT_TRUE(closesForGood());
}

std::shared_ptr<platform::UILabel> titleOf(const std::shared_ptr<QXEventStatusTableCell>& cell) {
    return std::dynamic_pointer_cast<platform::UILabel>(cell->viewWithTag(123123));
}

TEST(QXEventStatusTableCell, ofAnyStyle_keepsItAndShowsTheIdentifierLikeItsText) {
    const doubles::Phone phone;
    const auto row = platform::PSSpecifier::emptyGroupSpecifier();
    row->setIdentifier("Accepted");
    const auto styled =
        std::make_shared<QXEventStatusTableCell>(platform::UITableViewCellStyleValue1, "reuse", row);
    EXPECT_EQ(platform::UITableViewCellStyleValue1, styled->style());
    EXPECT_EQ("reuse", styled->reuseIdentifier());
    EXPECT_EQ(row, styled->specifier());
    ASSERT_NE(nullptr, titleOf(styled));
    EXPECT_EQ("Accepted", titleOf(styled)->text());
    EXPECT_EQ(styled->textLabel()->textAlignment(), titleOf(styled)->textAlignment());
    EXPECT_EQ(styled->textLabel()->fontSize(), titleOf(styled)->fontSize());
}

TEST(QXEventStatusTableCell, ofARowAlone_isOfTheDefaultStyleAndWithoutAReuseIdentifier) {
    const doubles::Phone phone;
    const auto row = platform::PSSpecifier::emptyGroupSpecifier();
    row->setIdentifier("Tentative");
    const auto alone = std::make_shared<QXEventStatusTableCell>(row);
    EXPECT_EQ(platform::UITableViewCellStyleDefault, alone->style());
    EXPECT_EQ("", alone->reuseIdentifier());
    EXPECT_EQ(row, alone->specifier());
    ASSERT_NE(nullptr, titleOf(alone));
    EXPECT_EQ("Tentative", titleOf(alone)->text());
}

TEST(QXEventStatusTableCell, withoutARow_hasATitleWithoutText) {
    const doubles::Phone phone;
    const auto rowless = std::make_shared<QXEventStatusTableCell>(nullptr);
    ASSERT_NE(nullptr, titleOf(rowless));
    EXPECT_EQ(std::nullopt, titleOf(rowless)->text());
}

}  // namespace
}  // namespace quietrix
