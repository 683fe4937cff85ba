// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/preferences/PSListController.h"
#include "shell/base/ErrorAlert.h"
#include "tests/doubles/PluginPhone.h"
#include "tests/doubles/ScreenFixture.h"

namespace quietrix {
namespace {

using doubles::required;
class ErrorAlert : public doubles::ScreenFixture<platform::PSListController, doubles::PluginPhone> {
  protected:
    ErrorAlert() { openScreen(doubles::Place::First); }
};

TEST_F(ErrorAlert, anError_isShownWithItsDescription) {
    qx_showError(*screen_, platform::Error{"The disk is full."});
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Error", alert()->title());
    EXPECT_EQ("The disk is full.", alert()->message());
    EXPECT_EQ(platform::UIAlertControllerStyleAlert, alert()->preferredStyle());
    ASSERT_EQ(1U, alert()->actions().size());
    EXPECT_EQ("Close", alert()->actions()[0].title);
    EXPECT_EQ(platform::UIAlertActionStyleCancel, alert()->actions()[0].style);
}

TEST_F(ErrorAlert, titleAndButton_areThePluginsOwn) {
    phone_.facts->languages = {"de"};
    phone_.files->put("/Applications/Settings.app/de.lproj/Localizable.strings",
                      R"("Error" = "Host"; "Close" = "Host";)");
    phone_.files->put("/Applications/Settings.app/de.lproj/UIKit.strings",
                      R"("Error" = "Toolkit"; "Close" = "Toolkit";)");
    qx_showError(*screen_, platform::Error{"x"});
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Fehler", alert()->title());
    EXPECT_EQ("Schließen", alert()->actions().at(0).title);
}

TEST_F(ErrorAlert, noError_isShownWithoutAMessage) {
    qx_showError(*screen_, std::nullopt);
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ(std::nullopt, alert()->message());
}

TEST_F(ErrorAlert, close_dismissesTheAlertOnly) {
    const auto modal = platform::UINavigationController::initWithRootViewController(
        std::make_shared<platform::PSViewController>());
    screen_->presentViewController_animated_completion(modal, true, nullptr);
    qx_showError(*screen_, platform::Error{"x"});
    required(alert())->choose(0);
    EXPECT_EQ(modal, doubles::Phone::top());
}

TEST_F(ErrorAlert, screenGoneBeforeClose_doesNothing) {
    qx_showError(*screen_, platform::Error{"x"});
    const auto shown = required(alert());
    phone_.show(nullptr);
    navigation_ = nullptr;
    const std::weak_ptr<platform::PSListController> weak = screen_;
    screen_ = nullptr;
    EXPECT_TRUE(weak.expired()) << "the alert does not hold its screen";
    shown->choose(0);
    EXPECT_EQ(nullptr, doubles::Phone::top());
}

}  // namespace
}  // namespace quietrix
