// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIViewController.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/ShownScreens.h"

namespace platform {
namespace {

using doubles::required;
using Calls = doubles::RecordedScreen::Calls;
using Lines = std::vector<std::string>;

class ScreenWithoutAView : public UIViewController {
  public:
    void loadView() override {}
    void viewDidLoad() override { loaded = isViewLoaded(); }
    bool loaded = false;
};

class Presentation : public testing::Test, public doubles::ShownScreens {
  protected:
    static std::shared_ptr<UINavigationController> modal(const std::shared_ptr<UIViewController>& root) {
        return UINavigationController::initWithRootViewController(root);
    }
    static std::shared_ptr<UIAlertController> alert() {
        return std::make_shared<UIAlertController>("Error", "text", UIAlertControllerStyleAlert);
    }
    static void present(const std::shared_ptr<UIViewController>& asker,
                        const std::shared_ptr<UIViewController>& screen) {
        asker->presentViewController_animated_completion(screen, true, {});
    }
    static void dismiss(const std::shared_ptr<UIViewController>& asker) {
        asker->dismissViewControllerAnimated_completion(true, {});
    }
};

TEST(UIViewController, view_isMadeOnFirstUseAndOnce) {
    Calls calls;
    const auto screen = std::make_shared<doubles::RecordedScreen>("s", calls);
    EXPECT_FALSE(screen->isViewLoaded());
    const auto view = screen->view();
    ASSERT_NE(nullptr, view);
    EXPECT_EQ(view, screen->view());
    EXPECT_EQ((Calls{"s load", "s loaded"}), calls);
    EXPECT_EQ((Rect{0, 0, 390, 844}), view->frame());
}

TEST(UIViewController, screenThatMakesNoView_getsOneAllTheSame) {
    const auto screen = std::make_shared<ScreenWithoutAView>();
    EXPECT_NE(nullptr, screen->view());
    EXPECT_TRUE(screen->loaded);
}

TEST(UIViewController, screenOnNoStack_hasNoNavigationController) {
    const auto screen = std::make_shared<UIViewController>();
    EXPECT_EQ(nullptr, screen->navigationController());
    EXPECT_EQ(nullptr, screen->presentedViewController());
    EXPECT_EQ(nullptr, screen->presentingViewController());
    EXPECT_NE(nullptr, screen->navigationItem());
}

TEST_F(Presentation, alert_leavesTheCoveredScreenWhereItIs) {
    const auto shown = alert();
    bool completed = false;
    root->presentViewController_animated_completion(shown, true, [&] { completed = true; });
    EXPECT_TRUE(completed);
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(root->isVisible());
    EXPECT_EQ(shown, top());
    EXPECT_EQ(shown, root->presentedViewController());
    EXPECT_EQ(shown, navigation->presentedViewController());
    dismiss(root);
    EXPECT_EQ(navigation, top());
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ((Lines{"present UIAlertController", "dismiss UIAlertController"}), takeJournal());
}

TEST_F(Presentation, fullScreen_makesTheCoveredOneDisappearFirstAndComeBack) {
    const auto editor = screen("editor");
    present(root, modal(editor));
    EXPECT_EQ((Calls{"editor load", "editor loaded", "root disappears", "editor appears"}), calls);
    calls.clear();
    dismiss(editor);
    EXPECT_EQ((Calls{"editor disappears", "root appears"}), calls);
    EXPECT_EQ(navigation, top());
    EXPECT_EQ((Lines{"present UINavigationController", "dismiss UINavigationController"}), takeJournal());
}

TEST_F(Presentation, leavingModalScreen_stillFindsItsNavigationController) {
    const auto editor = screen("editor");
    present(root, modal(editor));
    dismiss(root);
    EXPECT_TRUE(editor->hadNavigationWhenLeaving);
}

TEST_F(Presentation, fullScreenAboveAnAlert_coversTheScreenThatShowsThrough) {
    present(root, alert());
    const auto editor = screen("editor");
    present(root, modal(editor));
    EXPECT_FALSE(root->isVisible());
    calls.clear();
    dismiss(root);
    EXPECT_EQ((Calls{"editor disappears", "root appears"}), calls);
    EXPECT_EQ((Lines{"present UIAlertController", "present UINavigationController",
                     "dismiss UINavigationController", "dismiss UIAlertController"}),
              takeJournal());
}

TEST_F(Presentation, screenAskingFromBelow_presentsAboveEverything) {
    const auto editor = screen("editor");
    const auto sheet = modal(editor);
    present(root, sheet);
    const auto late = required(alert());
    present(root, late);
    EXPECT_EQ(late, top());
    EXPECT_EQ(sheet, late->presentingViewController());
    EXPECT_EQ(sheet, root->presentedViewController());
    EXPECT_EQ(late, editor->presentedViewController());
    dismiss(editor);
    EXPECT_EQ(sheet, top());
}

TEST_F(Presentation, dismissingAtTheBottom_removesEverythingTopmostFirst) {
    const auto editor = screen("editor");
    const auto second = screen("second");
    present(root, modal(editor));
    present(editor, modal(second));
    present(second, alert());
    calls.clear();
    takeJournal();
    dismiss(root);
    EXPECT_EQ((Calls{"second disappears", "root appears"}), calls) << "the editor in between never came back";
    EXPECT_EQ((Lines{"dismiss UIAlertController", "dismiss UINavigationController",
                     "dismiss UINavigationController"}),
              takeJournal());
    EXPECT_EQ(navigation, top());
}

TEST_F(Presentation, modalAboveAModal_uncoversThatModalOnly) {
    const auto editor = screen("editor");
    const auto second = screen("second");
    present(root, modal(editor));
    present(editor, modal(second));
    calls.clear();
    dismiss(second);
    EXPECT_EQ((Calls{"second disappears", "editor appears"}), calls);
    EXPECT_FALSE(root->isVisible());
}

TEST_F(Presentation, dismissingWhereNothingIsPresented_onlyRunsTheCompletion) {
    bool completed = false;
    root->dismissViewControllerAnimated_completion(true, [&] { completed = true; });
    EXPECT_TRUE(completed);
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(takeJournal().empty());
    const auto gone = alert();
    present(root, gone);
    dismiss(gone);
    takeJournal();
    present(root, alert());
    dismiss(gone);
    EXPECT_NE(navigation, top()) << "what is gone takes nothing else with it";
}

TEST_F(Presentation, nullOrWhatIsShownAlready_isLoggedAndIgnored) {
    const auto shown = alert();
    present(root, shown);
    takeJournal();
    bool completed = false;
    const auto before = phone.log->lines().size();
    for (const auto& refused :
         std::vector<std::shared_ptr<UIViewController>>{nullptr, shown, root, navigation}) {
        root->presentViewController_animated_completion(refused, true, [&] { completed = true; });
    }
    EXPECT_FALSE(completed);
    EXPECT_EQ(shown, top());
    EXPECT_EQ(before + 4, phone.log->lines().size());
    EXPECT_TRUE(phone.takeEvents("present").empty());
}

TEST_F(Presentation, closedScreens_areFreed) {
    auto editor = screen("editor");
    auto sheet = modal(editor);
    auto shown = alert();
    const std::weak_ptr<UIViewController> goneEditor = editor;
    const std::weak_ptr<UIViewController> goneSheet = sheet;
    const std::weak_ptr<UIViewController> goneAlert = shown;
    present(root, sheet);
    present(editor, shown);
    editor.reset();
    sheet.reset();
    shown.reset();
    dismiss(root);
    EXPECT_TRUE(goneEditor.expired());
    EXPECT_TRUE(goneSheet.expired());
    EXPECT_TRUE(goneAlert.expired());
}

TEST_F(Presentation, dismissedScreen_canBePresentedAgain) {
    const auto editor = screen("editor");
    const auto sheet = modal(editor);
    present(root, sheet);
    dismiss(root);
    present(root, sheet);
    EXPECT_EQ(sheet, top());
    EXPECT_TRUE(editor->isVisible());
}

TEST_F(Presentation, pushOnACoveredStack_isShownOnlyWhenUncovered) {
    present(root, modal(screen("editor")));
    calls.clear();
    const auto pushed = screen("pushed");
    navigation->pushViewController_animated(pushed, true);
    EXPECT_TRUE(calls.empty());
    dismiss(root);
    EXPECT_EQ((Calls{"editor disappears", "pushed load", "pushed loaded", "pushed appears"}), calls);
}

TEST(UIApplication, rootScreen_appearsAndTheOldOneLeavesFirstWithWhatItPresents) {
    doubles::Phone phone;
    Calls calls;
    UIApplication& application = UIApplication::sharedApplication();
    auto first = std::make_shared<doubles::RecordedScreen>("first", calls);
    const auto second = std::make_shared<doubles::RecordedScreen>("second", calls);
    application.setRootViewController(first);
    auto sheet = UINavigationController::initWithRootViewController(
        std::make_shared<doubles::RecordedScreen>("modal", calls));
    first->presentViewController_animated_completion(sheet, true, {});
    calls.clear();
    phone.takeEvents();
    const std::weak_ptr<UIViewController> goneRoot = first;
    const std::weak_ptr<UIViewController> goneSheet = sheet;
    first.reset();
    sheet.reset();
    application.setRootViewController(second);
    EXPECT_EQ((Calls{"modal disappears", "second load", "second loaded", "second appears"}), calls)
        << "the covered root had disappeared before";
    EXPECT_TRUE(goneRoot.expired());
    EXPECT_TRUE(goneSheet.expired());
    EXPECT_EQ(1U, phone.takeEvents("dismiss").size());
    application.setRootViewController(second);
    calls.clear();
    application.setRootViewController(nullptr);
    EXPECT_EQ(Calls{"second disappears"}, calls);
    EXPECT_EQ(nullptr, application.topmostPresented());
    EXPECT_TRUE(phone.takeEvents("push").empty());
}

TEST(UIApplication, addresses_goThroughTheDevice) {
    doubles::Phone phone;
    UIApplication& application = UIApplication::sharedApplication();
    EXPECT_FALSE(application.canOpenURL("twitter://"));
    EXPECT_FALSE(application.openURL("twitter://user"));
    phone.urls->openable.emplace_back("twitter://");
    EXPECT_TRUE(application.canOpenURL("twitter://"));
    EXPECT_TRUE(application.openURL("twitter://user"));
    EXPECT_EQ(Lines{"twitter://user"}, phone.urls->opened);
    phone.urls.reset();
    phone.install();
    EXPECT_FALSE(application.canOpenURL("https://example.org"));
    EXPECT_FALSE(application.openURL("https://example.org"));
}

}  // namespace
}  // namespace platform
