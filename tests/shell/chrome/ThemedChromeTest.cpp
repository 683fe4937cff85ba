// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIImageView.h"
#include "shell/base/Localization.h"
#include "shell/base/ProductInfo.h"
#include "shell/chrome/CopyRight.h"
#include "shell/chrome/ThemedChrome.h"
#include "tests/doubles/PluginPhone.h"
#include "tests/doubles/ScreenFixture.h"
#include "tests/shell/chrome/ThemedScreen.h"

namespace quietrix {

PLATFORM_REGISTER_CLASS(ThemedScreen)

namespace {

using doubles::required;
using platform::PSSpecifier;
using platform::UIApplication;
using platform::UIColor;

class ThemedChrome : public doubles::ScreenFixture<ThemedScreen, doubles::PluginPhone> {
  protected:
    ThemedChrome() { screen_ = std::make_shared<ThemedScreen>(); }
    std::shared_ptr<PSSpecifier> addCopyRightRow() {
        const auto row = PSSpecifier::groupSpecifierWithName("About");
        row->setIdentifier("CopyRightHeader");
        screen_->rows->push_back(row);
        return row;
    }
};

TEST_F(ThemedChrome, pushedAndPopped_leavesTheBarAsItWas) {
    const auto navigation = phone_.show(std::make_shared<platform::PSViewController>());
    const auto& bar = navigation->navigationBar();
    const auto tint = UIColor::redColor();
    const auto barTint = UIColor::darkGrayColor();
    bar->setTintColor(tint);
    bar->setBarTintColor(barTint);
    auto& application = UIApplication::sharedApplication();

    navigation->pushViewController_animated(screen_, true);
    EXPECT_TRUE(required(bar->tintColor())->isEqual(*UIColor::whiteColor()));
    ASSERT_NE(nullptr, bar->barTintColor());
    ASSERT_NE(nullptr, bar->barTintColor()->patternImage());
    EXPECT_EQ("nav", bar->barTintColor()->patternImage()->name());
    EXPECT_EQ(platform::UIStatusBarStyleLightContent, application.statusBarStyle());
    EXPECT_EQ(tint, screen_->prevTintcolor());
    EXPECT_EQ(barTint, screen_->prevBarTintcolor());
    EXPECT_EQ(platform::UIStatusBarStyleDefault, screen_->prevStatubarStyle());

    navigation->popViewControllerAnimated(true);
    EXPECT_EQ(tint, bar->tintColor());
    EXPECT_EQ(barTint, bar->barTintColor());
    EXPECT_EQ(platform::UIStatusBarStyleDefault, application.statusBarStyle());
}

TEST_F(ThemedChrome, shownTwiceWithoutDisappearing_savesItsOwnColours) {
    const auto navigation = phone_.show(screen_);
    screen_->viewWillAppear(false);
    EXPECT_TRUE(required(screen_->prevTintcolor())->isEqual(*UIColor::whiteColor()));
    EXPECT_EQ(platform::UIStatusBarStyleLightContent, screen_->prevStatubarStyle());
}

TEST_F(ThemedChrome, shownOnNoBar_savesNoColours) {
    const auto navigation = phone_.show(std::make_shared<platform::PSViewController>());
    navigation->navigationBar()->setTintColor(UIColor::redColor());
    navigation->navigationBar()->setBarTintColor(UIColor::darkGrayColor());
    navigation->pushViewController_animated(screen_, true);
    navigation->popViewControllerAnimated(true);
    screen_->viewWillAppear(false);
    EXPECT_EQ(nullptr, screen_->prevTintcolor());
    EXPECT_EQ(nullptr, screen_->prevBarTintcolor());
}

TEST_F(ThemedChrome, withoutTheColourImage_leavesThePlatformsDefault) {
    phone_.removePluginBundle();
    const auto navigation = phone_.show(screen_);
    EXPECT_EQ(nullptr, navigation->navigationBar()->barTintColor());
}

TEST_F(ThemedChrome, loaded_hasShareButtonAndLogo) {
    phone_.show(screen_);
    const auto item = screen_->navigationItem();
    ASSERT_EQ(1U, item->rightBarButtonItems().size());
    const auto button = item->rightBarButtonItem();
    ASSERT_NE(nullptr, button->image());
    EXPECT_EQ("twitter", button->image()->name());
    EXPECT_EQ(platform::UIBarButtonItemStylePlain, button->style());
    EXPECT_EQ("__tessaneTwitterAction:", button->action().selector());
    EXPECT_EQ(screen_, button->target());
    const auto logo = std::dynamic_pointer_cast<platform::UIImageView>(item->titleView());
    ASSERT_NE(nullptr, logo);
    EXPECT_EQ("Quietrix", required(logo->image())->name());
    EXPECT_EQ(1.0, logo->alpha());
    EXPECT_EQ(nullptr, item->backBarButtonItem());
}

TEST_F(ThemedChrome, loaded_fadesTheLogoInOverOneSecond) {
    phone_.show(screen_);
    const auto logo = screen_->navigationItem()->titleView();
    ASSERT_NE(nullptr, logo);
    ASSERT_TRUE(logo->fade().has_value());
    EXPECT_EQ((platform::UIView::Fade{.from = 0, .seconds = 1}), *logo->fade());
}

TEST_F(ThemedChrome, beforeIOS11_hasTheLogoForTheBackButton) {
    phone_.facts->version = "10.3.3";
    phone_.show(screen_);
    const auto back = screen_->navigationItem()->backBarButtonItem();
    ASSERT_NE(nullptr, back);
    EXPECT_EQ("Quietrix", required(back->image())->name());
    EXPECT_EQ("backButtonAction:", back->action().selector());
}

TEST_F(ThemedChrome, yearSetAlready_isNotComputedAgain) {
    currentYear() = 1999;
    phone_.show(screen_);
    EXPECT_EQ(1999, currentYear());
}

TEST_F(ThemedChrome, yearNotSet_isThePresentOne) {
    phone_.show(screen_);
    EXPECT_EQ(yearOfPresentDate(), currentYear());
    EXPECT_GT(currentYear(), 2000);
}

TEST_F(ThemedChrome, loaded_putsTheVersionNoticeUnderTheCopyrightRow) {
    const auto row = addCopyRightRow();
    currentYear() = 2031;
    phone_.show(screen_);
    EXPECT_EQ(
        "Version " + doubles::productVersion() + ". Quietrix Go \u00A9 2031 Velmora. All rights reserved.",
        row->propertyForKey("footerText").stringOr());
}

TEST_F(ThemedChrome, versionNotice_hasTheNameThatTheHostHasForTheProduct) {
    phone_.facts->languages = {"de"};
    phone_.files->put("/Applications/Settings.app/de.lproj/Localizable.strings",
                      R"("Quietrix Go" = "Name at the host";)");
    phone_.files->put(std::string(bundlePath) + "/de.lproj/Localizable.strings",
                      R"("Quietrix Go" = "Name in the bundle";)");
    const auto row = addCopyRightRow();
    phone_.show(screen_);
    EXPECT_TRUE(row->propertyForKey("footerText")
                    .stringOr()
                    .starts_with("Version " + doubles::productVersion() + ". Name at the host \u00A9 "));
}

TEST_F(ThemedChrome, versionThatCannotBeRead_isPrintedAsNil) {
    const auto row = addCopyRightRow();
    ASSERT_TRUE(phone_.files->remove(std::string(bundlePath) + "/Quietrix.plist"));
    phone_.show(screen_);
    EXPECT_TRUE(row->propertyForKey("footerText").stringOr().starts_with("Version (null). Quietrix Go "));
}

TEST_F(ThemedChrome, noCopyrightRow_loadsAllTheSame) {
    phone_.show(screen_);
    EXPECT_TRUE(screen_->isViewLoaded());
}

TEST_F(ThemedChrome, shareButtonPressed_showsTheSheet) {
    phone_.show(screen_);
    required(screen_->navigationItem()->rightBarButtonItem())->press();
    EXPECT_NE(nullptr, alert());
}

TEST_F(ThemedChrome, closedScreen_isFreed) {
    const auto navigation = phone_.show(std::make_shared<platform::PSViewController>());
    navigation->pushViewController_animated(screen_, true);
    required(screen_->navigationItem()->rightBarButtonItem())->press();
    required(alert())->choose(2);
    const std::weak_ptr<ThemedScreen> weak = screen_;
    screen_ = nullptr;
    navigation->popViewControllerAnimated(true);
    EXPECT_TRUE(weak.expired());
}

}  // namespace
}  // namespace quietrix
