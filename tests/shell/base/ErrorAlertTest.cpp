// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/preferences/PSListController.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIApplication.h"
#include "shell/base/ErrorAlert.h"
#include "tests/shell/phone/PluginPhone.h"

namespace quietrix {
namespace {

using platform::UIAlertController;

class ErrorAlert : public testing::Test {
  protected:
    ErrorAlert() { phone_.show(screen_); }
    std::shared_ptr<UIAlertController> shown() const {
        return std::dynamic_pointer_cast<UIAlertController>(
            platform::UIApplication::sharedApplication().topmostPresented());
    }

    doubles::PluginPhone phone_;
    std::shared_ptr<platform::PSListController> screen_ = std::make_shared<platform::PSListController>();
};

TEST_F(ErrorAlert, anError_isShownWithItsDescription) {
    qx_showError(*screen_, platform::Error{"The disk is full."});
    ASSERT_NE(nullptr, shown());
    EXPECT_EQ("Error", shown()->title());
    EXPECT_EQ("The disk is full.", shown()->message());
    EXPECT_EQ(platform::UIAlertControllerStyleAlert, shown()->preferredStyle());
    ASSERT_EQ(1U, shown()->actions().size());
    EXPECT_EQ("Close", shown()->actions()[0].title);
    EXPECT_EQ(platform::UIAlertActionStyleCancel, shown()->actions()[0].style);
}

TEST_F(ErrorAlert, titleAndButton_areThePluginsOwn) {
    phone_.facts->languages = {"de"};
    phone_.files->put("/Applications/Settings.app/de.lproj/Localizable.strings",
                      R"("Error" = "Host"; "Close" = "Host";)");
    phone_.files->put("/Applications/Settings.app/de.lproj/UIKit.strings",
                      R"("Error" = "Toolkit"; "Close" = "Toolkit";)");
    qx_showError(*screen_, platform::Error{"x"});
    ASSERT_NE(nullptr, shown());
    EXPECT_EQ("Fehler", shown()->title());
    EXPECT_EQ("Schließen", shown()->actions().at(0).title);
}

TEST_F(ErrorAlert, noError_isShownWithoutAMessage) {
    qx_showError(*screen_, std::nullopt);
    ASSERT_NE(nullptr, shown());
    EXPECT_EQ(std::nullopt, shown()->message());
}

TEST_F(ErrorAlert, close_dismissesTheAlertOnly) {
    const auto modal = platform::UINavigationController::initWithRootViewController(
        std::make_shared<platform::PSViewController>());
    screen_->presentViewController_animated_completion(modal, true, nullptr);
    qx_showError(*screen_, platform::Error{"x"});
    shown()->choose(0);
    EXPECT_EQ(modal, platform::UIApplication::sharedApplication().topmostPresented());
}

TEST_F(ErrorAlert, screenGoneBeforeClose_doesNothing) {
    qx_showError(*screen_, platform::Error{"x"});
    const auto alert = shown();
    platform::UIApplication::sharedApplication().setRootViewController(nullptr);
    const std::weak_ptr<platform::PSListController> weak = screen_;
    screen_ = nullptr;
    EXPECT_TRUE(weak.expired()) << "the alert does not hold its screen";
    alert->choose(0);
    EXPECT_EQ(nullptr, platform::UIApplication::sharedApplication().topmostPresented());
}

}  // namespace
}  // namespace quietrix
