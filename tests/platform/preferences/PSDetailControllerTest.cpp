// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/preferences/PSDetailController.h"
#include "platform/preferences/PSPlaceholderController.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UINavigationController.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/ShownList.h"

namespace platform {
namespace {

using doubles::required;

class TestEditingPane : public PSEditingPane {
    PLATFORM_CLASS(TestEditingPane, PSEditingPane)
};
PLATFORM_REGISTER_CLASS(TestEditingPane)

std::shared_ptr<PSSpecifier> rowWithPane(std::string_view pane) {
    return PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit("Row", nullptr, {}, {}, {},
                                                                                 PSCellType::Link, pane);
}

TEST(PSDetailController, appearing_makesTheRowsPaneOnce) {
    doubles::Phone phone;
    const auto screen = std::make_shared<PSDetailController>();
    const auto row = rowWithPane("TestEditingPane");
    screen->setSpecifier(row);
    screen->beginAppearanceTransition(true, false);
    const auto pane = screen->pane();
    ASSERT_NE(nullptr, pane);
    EXPECT_EQ("TestEditingPane", pane->getClass().name());
    EXPECT_EQ(row, pane->preferenceSpecifier());
    EXPECT_EQ(screen, pane->delegate());
    EXPECT_EQ(screen->view(), pane->superview());
    EXPECT_EQ(screen->view()->bounds(), pane->frame());
    screen->beginAppearanceTransition(false, false);
    screen->beginAppearanceTransition(true, false);
    EXPECT_EQ(pane, screen->pane());
}

TEST(PSDetailController, rowWithoutAUsablePane_leavesTheScreenEmpty) {
    doubles::Phone phone;
    const auto screen = std::make_shared<PSDetailController>();
    screen->loadPane();
    screen->setSpecifier(rowWithPane(""));
    screen->loadPane();
    EXPECT_TRUE(phone.log->lines().empty());
    screen->setSpecifier(rowWithPane("UILabel"));
    screen->loadPane();
    EXPECT_EQ(nullptr, screen->pane());
    ASSERT_EQ(1U, phone.log->lines().size());
    EXPECT_EQ("PSDetailController: The class \"UILabel\" is no \"PSEditingPane\".", phone.log->lines()[0]);
}

TEST(PSDetailController, otherPane_takesThePlaceOfTheOld) {
    const auto screen = std::make_shared<PSDetailController>();
    const auto first = std::make_shared<PSEditingPane>();
    const auto second = std::make_shared<PSEditingPane>();
    screen->setPane(first);
    screen->setPane(second);
    screen->setPane(second);
    EXPECT_EQ(nullptr, first->superview());
    EXPECT_EQ(std::vector<std::shared_ptr<UIView>>{second}, screen->view()->subviews());
    screen->setPane(nullptr);
    EXPECT_TRUE(screen->view()->subviews().empty());
}

TEST(PSDetailController, closedScreen_isFreedWithItsPane) {
    doubles::Phone phone;
    auto screen = std::make_shared<PSDetailController>();
    screen->setSpecifier(rowWithPane("TestEditingPane"));
    screen->loadPane();
    const std::weak_ptr<PSDetailController> gone = screen;
    const std::weak_ptr<PSEditingPane> gonePane = screen->pane();
    screen.reset();
    EXPECT_TRUE(gone.expired());
    EXPECT_TRUE(gonePane.expired());
}

TEST(PSViewController, rowsName_becomesTheTitleWhenThereIsOne) {
    const auto screen = std::make_shared<PSViewController>();
    screen->setTitle("Before");
    screen->setSpecifier(PSSpecifier::emptyGroupSpecifier());
    EXPECT_EQ("Before", screen->title());
    screen->setSpecifier(rowWithPane(""));
    EXPECT_EQ("Row", screen->title());
    screen->setSpecifier(nullptr);
    EXPECT_EQ(nullptr, screen->specifier());
}

class Placeholders : public testing::Test {
  protected:
    doubles::Phone phone_;
    std::shared_ptr<UIViewController> first_ = std::make_shared<UIViewController>();
    std::shared_ptr<UINavigationController> root_ = phone_.show(first_);
    std::shared_ptr<PSViewController> placeholder_ = makeViewController("NoSuchScreen");
};

TEST_F(Placeholders, unknownScreen_isAPlaceholder) {
    EXPECT_EQ("PSPlaceholderController", placeholder_->getClass().name());
    EXPECT_EQ("PSDetailController", required(makeViewController("PSDetailController"))->getClass().name());
}

TEST_F(Placeholders, presentedPlaceholder_hasADoneButtonThatClosesIt) {
    first_->presentViewController_animated_completion(
        UINavigationController::initWithRootViewController(placeholder_), true, {});
    const auto done = placeholder_->navigationItem()->rightBarButtonItem();
    ASSERT_NE(nullptr, done);
    EXPECT_EQ(UIBarButtonSystemItemDone, done->systemItem());
    done->press();
    EXPECT_EQ(root_, UIApplication::sharedApplication().topmostPresented());
}

TEST_F(Placeholders, pushedPlaceholder_hasTheBackButtonAndNoOther) {
    root_->pushViewController_animated(placeholder_, true);
    EXPECT_EQ(nullptr, placeholder_->navigationItem()->rightBarButtonItem());
}

}  // namespace
}  // namespace platform
