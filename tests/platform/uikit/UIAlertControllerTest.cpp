// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/social/SLComposeViewController.h"
#include "platform/uikit/UIAlertController.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/ShownScreens.h"

namespace platform {
namespace {

using doubles::required;
using Lines = std::vector<std::string>;

class Alerts : public testing::Test, public doubles::ShownScreens {
  protected:
    /// An alert with one button, presented by the screen.
    std::shared_ptr<UIAlertController> presentAlert(const std::shared_ptr<UIViewController>& asker,
                                                    std::function<void()> handler,
                                                    std::int64_t style = UIAlertControllerStyleAlert) {
        auto alert = std::make_shared<UIAlertController>(std::nullopt, "message", style);
        alert->addAction({"Close", UIAlertActionStyleCancel, std::move(handler)});
        asker->presentViewController_animated_completion(alert, true, {});
        return alert;
    }
    static void dismiss(const std::shared_ptr<UIViewController>& asker) {
        asker->dismissViewControllerAnimated_completion(true, {});
    }
};

TEST_F(Alerts, press_dismissesBeforeTheHandlerRuns) {
    bool wasGone = false;
    Lines before;
    const auto alert = presentAlert(root, [&] {
        wasGone = top() == navigation;
        before = takeJournal();
    });
    alert->choose(0);
    EXPECT_TRUE(wasGone);
    EXPECT_EQ((Lines{"present UIAlertController", "dismiss UIAlertController"}), before);
    EXPECT_TRUE(takeJournal().empty());
}

TEST_F(Alerts, pressOutOfRangeOrOnAnAlertThatIsGone_doesNothing) {
    int pressed = 0;
    const auto alert = presentAlert(root, [&] { ++pressed; });
    alert->choose(1);
    EXPECT_EQ(alert, top());
    alert->choose(0);
    alert->choose(0);
    EXPECT_EQ(1, pressed);
    EXPECT_EQ(navigation, top());
}

TEST_F(Alerts, buttonWithoutAHandler_onlyDismisses) {
    presentAlert(root, {})->choose(0);
    EXPECT_EQ(navigation, top());
}

TEST_F(Alerts, handlerDismissingOnTheAsker_isForTheAlertThatIsGone) {
    const auto editor = screen("editor");
    const auto modal = UINavigationController::initWithRootViewController(editor);
    root->presentViewController_animated_completion(modal, true, {});
    takeJournal();
    bool completed = false;
    presentAlert(editor, [&] {
        EXPECT_EQ(nullptr, editor->presentedViewController());
        editor->dismissViewControllerAnimated_completion(true, [&] { completed = true; });
        dismiss(modal);
    })->choose(0);
    EXPECT_TRUE(completed);
    EXPECT_EQ(modal, top());
    EXPECT_EQ((Lines{"present UIAlertController", "dismiss UIAlertController"}), takeJournal());
    dismiss(editor);
    EXPECT_EQ(navigation, top()) << "after the handler it means the editor again";
}

TEST_F(Alerts, handlerOfTheScreenBelow_leavesTheModalEditorItPresented) {
    const auto modal = UINavigationController::initWithRootViewController(screen("editor"));
    root->presentViewController_animated_completion(modal, true, {});
    presentAlert(root, [&] {
        EXPECT_EQ(nullptr, root->presentedViewController());
        dismiss(root);
        dismiss(navigation);
    })->choose(0);
    EXPECT_EQ(modal, top());
}

TEST_F(Alerts, handlerDismissingSomeOtherScreen_isNotHeldBack) {
    const auto editor = screen("editor");
    const auto modal = UINavigationController::initWithRootViewController(editor);
    root->presentViewController_animated_completion(modal, true, {});
    presentAlert(editor, [&] { dismiss(root); })->choose(0);
    EXPECT_EQ(navigation, top());
}

TEST_F(Alerts, sheetHandlerThatPresentsAComposerAndDismissesTheSheet_leavesTheComposer) {
    const auto composer = SLComposeViewController::composeViewControllerForServiceType(SLServiceTypeTwitter);
    std::weak_ptr<UIAlertController> sheet;
    const auto shown = presentAlert(
        root,
        [&] {
            root->presentViewController_animated_completion(composer, true, {});
            if (const auto gone = sheet.lock()) dismiss(gone);
            dismiss(root);
        },
        UIAlertControllerStyleActionSheet);
    sheet = shown;
    shown->choose(0);
    EXPECT_EQ(composer, top());
    EXPECT_TRUE(calls.empty()) << "sheets and composers cover nothing";
}

TEST_F(Alerts, handlerThatPressesAnotherAlert_isStillForItsOwn) {
    const auto editor = screen("editor");
    const auto modal = UINavigationController::initWithRootViewController(editor);
    root->presentViewController_animated_completion(modal, true, {});
    presentAlert(editor, [&] {
        presentAlert(root, {})->choose(0);
        dismiss(editor);
    })->choose(0);
    EXPECT_EQ(modal, top());
}

TEST_F(Alerts, pressBeneathAnotherAlert_takesBothAway) {
    int pressed = 0;
    const auto lower = presentAlert(root, [&] { ++pressed; });
    presentAlert(root, [&] { pressed += 10; });
    lower->choose(0);
    EXPECT_EQ(1, pressed);
    EXPECT_EQ(navigation, top());
}

TEST_F(Alerts, pressedAlert_isFreedWithItsHandler) {
    const auto captured = std::make_shared<int>(0);
    std::weak_ptr<UIAlertController> gone = presentAlert(root, [captured] { ++*captured; });
    ASSERT_FALSE(gone.expired());
    required(gone.lock())->choose(0);
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(1, *captured);
    EXPECT_EQ(1, captured.use_count());
}

TEST_F(Alerts, shownAlert_keepsNoClosedScreenAlive) {
    auto pushed = screen("pushed");
    const std::weak_ptr<UIViewController> gone = pushed;
    navigation->pushViewController_animated(pushed, true);
    const auto alert = presentAlert(pushed, [] {});
    pushed.reset();
    navigation->popViewControllerAnimated(true);
    EXPECT_TRUE(gone.expired());
    alert->choose(0);
    EXPECT_EQ(navigation, top());
}

TEST_F(Alerts, texts_areTheOnesGiven) {
    const auto alert =
        std::make_shared<UIAlertController>("Error", std::nullopt, UIAlertControllerStyleAlert);
    EXPECT_EQ("Error", alert->title());
    EXPECT_FALSE(alert->message().has_value());
    EXPECT_FALSE(alert->isFullScreen());
}

}  // namespace
}  // namespace platform
