// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/uikit/UINavigationController.h"
#include "tests/doubles/ShownScreens.h"

namespace platform {
namespace {

using Calls = doubles::RecordedScreen::Calls;

class Stack : public testing::Test, public doubles::ShownScreens {
  protected:
    std::size_t count(std::string_view kind) { return phone.takeEvents(kind).size(); }
};

TEST_F(Stack, push_makesTheOldScreenLeaveBeforeTheNewOneAppears) {
    const auto pushed = screen("pushed");
    navigation->pushViewController_animated(pushed, true);
    EXPECT_EQ((Calls{"pushed load", "pushed loaded", "root disappears", "pushed appears"}), calls);
    EXPECT_EQ(navigation, pushed->navigationController());
    EXPECT_EQ(pushed, navigation->topViewController());
    EXPECT_EQ(1U, count("push"));
}

TEST_F(Stack, pop_makesTheScreenLeaveBeforeTheOneBelowAppears) {
    const auto pushed = screen("pushed");
    navigation->pushViewController_animated(pushed, true);
    calls.clear();
    EXPECT_EQ(pushed, navigation->popViewControllerAnimated(true));
    EXPECT_EQ((Calls{"pushed disappears", "root appears"}), calls);
    EXPECT_TRUE(pushed->hadNavigationWhenLeaving) << "it restores the bar's colours";
    EXPECT_EQ(nullptr, pushed->navigationController());
    EXPECT_EQ(1U, count("pop"));
}

TEST_F(Stack, popOfTheRoot_doesNothing) {
    EXPECT_EQ(nullptr, navigation->popViewControllerAnimated(true));
    navigation->popToRootViewControllerAnimated(true);
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(root, navigation->topViewController());
    EXPECT_EQ(0U, count("pop"));
}

TEST_F(Stack, popToRoot_takesEverythingOffAndOnlyTheTopmostDisappears) {
    for (const char* name : {"a", "b", "c"}) navigation->pushViewController_animated(screen(name), false);
    calls.clear();
    navigation->popToRootViewControllerAnimated(true);
    EXPECT_EQ((Calls{"c disappears", "root appears"}), calls);
    EXPECT_EQ(1U, navigation->viewControllers().size());
    EXPECT_EQ(3U, count("pop"));
}

TEST_F(Stack, poppedScreens_areFreed) {
    std::vector<std::weak_ptr<UIViewController>> gone;
    for (const char* name : {"a", "b"}) {
        const auto pushed = screen(name);
        gone.push_back(pushed);
        navigation->pushViewController_animated(pushed, false);
        const auto item =
            std::make_shared<UIBarButtonItem>(UIBarButtonSystemItemAdd, pushed, UIBarButtonItem::Action());
        pushed->navigationItem()->setRightBarButtonItem_animated(item, false);
    }
    navigation->popViewControllerAnimated(true);
    EXPECT_TRUE(gone[1].expired());
    navigation->popToRootViewControllerAnimated(true);
    EXPECT_TRUE(gone[0].expired());
}

TEST_F(Stack, nullOrAScreenThatIsHeldAlready_isLoggedAndIgnored) {
    const auto other = UINavigationController::initWithRootViewController(screen("elsewhere"));
    const auto before = phone.log->lines().size();
    navigation->pushViewController_animated(nullptr, true);
    navigation->pushViewController_animated(root, true);
    navigation->pushViewController_animated(navigation, true);
    navigation->pushViewController_animated(other->topViewController(), true);
    EXPECT_EQ(1U, navigation->viewControllers().size());
    EXPECT_EQ(before + 4, phone.log->lines().size());
    EXPECT_EQ(0U, count("push"));
}

TEST_F(Stack, stackThatIsNotShown_sendsNothingUntilItIs) {
    const auto first = screen("first");
    const auto second = screen("second");
    const auto hidden = UINavigationController::initWithRootViewController(first);
    hidden->pushViewController_animated(second, true);
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(1U, count("push"));
    UIApplication::sharedApplication().setRootViewController(hidden);
    EXPECT_EQ((Calls{"root disappears", "second load", "second loaded", "second appears"}), calls);
    EXPECT_FALSE(first->isViewLoaded());
}

TEST_F(Stack, innerNavigationController_isFoundFirstThenTheOuter) {
    const auto deep = screen("deep");
    const auto inner = UINavigationController::initWithRootViewController(deep);
    navigation->pushViewController_animated(inner, true);
    EXPECT_EQ(inner, deep->navigationController());
    EXPECT_EQ(navigation, inner->navigationController());
    EXPECT_EQ(nullptr, navigation->navigationController());
    EXPECT_TRUE(deep->isVisible());
    navigation->popViewControllerAnimated(true);
    EXPECT_FALSE(deep->isVisible());
}

TEST_F(Stack, screen_isToldOnceForEachChange) {
    navigation->beginAppearanceTransition(true, false);
    root->beginAppearanceTransition(true, false);
    EXPECT_TRUE(calls.empty());
    navigation->beginAppearanceTransition(false, false);
    navigation->beginAppearanceTransition(false, false);
    EXPECT_EQ(Calls{"root disappears"}, calls);
}

TEST(UINavigationController, emptyStack_takesItsFirstScreenByPush) {
    doubles::Phone phone;
    Calls calls;
    const auto navigation = UINavigationController::initWithRootViewController(nullptr);
    EXPECT_EQ(nullptr, navigation->topViewController());
    UIApplication::sharedApplication().setRootViewController(navigation);
    navigation->pushViewController_animated(std::make_shared<doubles::RecordedScreen>("s", calls), true);
    EXPECT_EQ((Calls{"s load", "s loaded", "s appears"}), calls);
    UIApplication::sharedApplication().setRootViewController(nullptr);
}

TEST(UINavigationController, bar_isMadeOnceAndIsPlain) {
    const auto navigation = std::make_shared<UINavigationController>();
    const auto bar = navigation->navigationBar();
    EXPECT_EQ(bar, navigation->navigationBar());
    EXPECT_EQ(nullptr, bar->tintColor());
    EXPECT_EQ(nullptr, bar->barTintColor());
}

}  // namespace
}  // namespace platform
