// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/uikit/UIAlertView.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/ShownScreens.h"

namespace platform {
namespace {

using doubles::required;

class AlertView : public testing::Test, public doubles::ShownScreens {
  protected:
    static std::shared_ptr<UIAlertController> shown() {
        return std::dynamic_pointer_cast<UIAlertController>(top());
    }
};

TEST_F(AlertView, shownAlert_outlivesItsViewAndClosesWithItsButton) {
    std::make_shared<UIAlertView>("Error", "The disk is full.", nullptr, "Close", std::vector<std::string>())
        ->show();
    const auto alert = shown();
    ASSERT_TRUE(alert);
    EXPECT_EQ("Error", alert->title());
    EXPECT_EQ("The disk is full.", alert->message());
    EXPECT_EQ(UIAlertControllerStyleAlert, alert->preferredStyle());
    ASSERT_EQ(1U, alert->actions().size());
    EXPECT_EQ("Close", alert->actions()[0].title);
    EXPECT_EQ(UIAlertActionStyleCancel, alert->actions()[0].style);
    alert->choose(0);
    EXPECT_EQ(navigation, top());
}

TEST_F(AlertView, shown_aboveWhateverIsShown) {
    const auto sheet =
        std::make_shared<UIAlertController>(std::nullopt, "Sheet", UIAlertControllerStyleActionSheet);
    root->presentViewController_animated_completion(sheet, true, {});
    UIAlertView alert("Title", std::nullopt, nullptr, std::nullopt, {"One", "Two"});
    alert.show();
    EXPECT_EQ(sheet, top()->presentingViewController());
    EXPECT_EQ(2U, required(shown())->actions().size());
    alert.dismiss();
    EXPECT_EQ(sheet, top());
}

TEST_F(AlertView, shownOrDismissedTwice_isShownOrDismissedOnce) {
    UIAlertView alert("Title", std::nullopt, nullptr, "Close", {});
    alert.show();
    alert.show();
    EXPECT_TRUE(alert.isVisible());
    alert.dismiss();
    alert.dismiss();
    EXPECT_FALSE(alert.isVisible());
    EXPECT_EQ((std::vector<std::string>{"present UIAlertController", "dismiss UIAlertController"}),
              takeJournal());
}

TEST_F(AlertView, withoutAWindow_isLogged) {
    UIApplication::sharedApplication().setRootViewController(nullptr);
    UIAlertView("Error", std::nullopt, nullptr, "Close", {}).show();
    ASSERT_EQ(1U, phone.log->lines().size());
    EXPECT_NE(std::string::npos, phone.log->lines()[0].find("Error"));
}

}  // namespace
}  // namespace platform
