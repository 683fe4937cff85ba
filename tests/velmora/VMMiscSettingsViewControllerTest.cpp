// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/social/SLComposeViewController.h"
#include "platform/uikit/UIApplication.h"
#include "tests/doubles/ScreenFixture.h"
#include "velmora/VMMiscSettingsViewController.h"

namespace velmora {
namespace {

using doubles::required;
using platform::PSSpecifier;
using platform::SpecifierList;
using platform::UIApplication;
using platform::UIColor;

class MiscTestScreen : public VMMiscSettingsViewController {
    PLATFORM_CLASS(MiscTestScreen, VMMiscSettingsViewController)

  public:
    bool hasCustomNavigationBarColor() const override { return wearsColor; }
    std::shared_ptr<UIColor> customNavigationBarColor() const override { return UIColor::redColor(); }
    std::string twitterMessage() const override { return message; }
    std::string copryRightSpecifierText(const std::shared_ptr<PSSpecifier>&) override {
        return "Notice " + std::to_string(++notices);
    }
    platform::SpecifierArray specifiers() override {
        if (specifiers_ && !specifiers_->empty()) return specifiers_;
        specifiers_ = std::make_shared<SpecifierList>();
        for (int row = 0; row < rowCount; ++row)
            specifiers_->push_back(PSSpecifier::groupSpecifierWithName("Row " + std::to_string(row)));
        return specifiers_;
    }
    /// How often the copyright row stands in the list.
    std::int64_t copyRightRows() {
        return std::ranges::count_if(
            *specifiers(), [](const auto& row) { return row->identifier() == copyRightHeaderIdentifier; });
    }

    bool wearsColor = true;
    std::string message = "Try it";
    int rowCount = 2;
    int notices = 0;
};
PLATFORM_REGISTER_CLASS(MiscTestScreen)

class MiscSettings : public doubles::ScreenFixture<MiscTestScreen, doubles::Phone> {
  protected:
    MiscSettings() { screen_ = std::make_shared<MiscTestScreen>(); }
    /// Pushes the screen above one whose bar is dark grey.
    void show() {
        navigation_ = phone_.show(std::make_shared<platform::PSViewController>());
        navigation_->navigationBar()->setTintColor(UIColor::darkGrayColor());
        navigation_->pushViewController_animated(screen_, false);
    }
};

TEST_F(MiscSettings, loaded_hasOneCopyrightRowAfterTheScreensOwn) {
    show();
    const auto rows = screen_->specifiers();
    ASSERT_EQ(3U, rows->size());
    const auto& last = *rows->back();
    EXPECT_EQ("CopyRightHeader", last.identifier());
    EXPECT_TRUE(last.isGroup());
    EXPECT_EQ(std::nullopt, last.name());
    EXPECT_EQ("Notice 1", last.propertyForKey("footerText").stringOr());
}

TEST_F(MiscSettings, everyRebuild_keepsTheCopyrightRowLastAndSingle) {
    show();
    const auto row = screen_->specifiers()->at(2);
    for (int rebuild = 0; rebuild < 3; ++rebuild) screen_->reloadSpecifiers();
    EXPECT_EQ(3U, screen_->specifiers()->size());
    EXPECT_EQ(row, screen_->specifiers()->at(2));
    EXPECT_EQ(1, screen_->copyRightRows());
}

TEST_F(MiscSettings, rowInsertedBehindIt_doesNotStayBehind) {
    show();
    screen_->insertSpecifier_atIndex_animated(PSSpecifier::groupSpecifierWithName("Late"), 3, false);
    EXPECT_EQ("CopyRightHeader", rowAt(3)->identifier());
    EXPECT_EQ("Late", rowAt(2)->name());
    EXPECT_EQ(1, screen_->copyRightRows());
}

TEST_F(MiscSettings, screenWithoutRows_hasTheCopyrightRowAlone) {
    screen_->rowCount = 0;
    show();
    EXPECT_EQ(1U, screen_->specifiers()->size());
    screen_->reloadSpecifiers();
    EXPECT_EQ(1U, screen_->specifiers()->size());
}

TEST_F(MiscSettings, onTop_wearsTheCustomColourAndGivesTheOldBack) {
    show();
    const auto& bar = navigation_->navigationBar();
    EXPECT_TRUE(required(bar->barTintColor())->isEqual(*UIColor::redColor()));
    EXPECT_TRUE(required(bar->tintColor())->isEqual(*UIColor::whiteColor()));
    EXPECT_EQ(platform::UIStatusBarStyleLightContent, UIApplication::sharedApplication().statusBarStyle());
    navigation_->popViewControllerAnimated(false);
    EXPECT_EQ(nullptr, bar->barTintColor());
    EXPECT_TRUE(required(bar->tintColor())->isEqual(*UIColor::darkGrayColor()));
    EXPECT_EQ(platform::UIStatusBarStyleDefault, UIApplication::sharedApplication().statusBarStyle());
}

TEST_F(MiscSettings, popped_givesBackTheStatusBarStyleThatWasThere) {
    auto& application = UIApplication::sharedApplication();
    application.setStatusBarStyle(platform::UIStatusBarStyleLightContent);
    show();
    application.setStatusBarStyle(platform::UIStatusBarStyleDefault);
    navigation_->popViewControllerAnimated(false);
    EXPECT_EQ(platform::UIStatusBarStyleLightContent, application.statusBarStyle());
}

TEST_F(MiscSettings, withoutCustomColour_leavesTheBarAlone) {
    screen_->wearsColor = false;
    show();
    EXPECT_EQ(nullptr, navigation_->navigationBar()->barTintColor());
    EXPECT_TRUE(required(navigation_->navigationBar()->tintColor())->isEqual(*UIColor::darkGrayColor()));
}

TEST_F(MiscSettings, shareButton_composesTheScreensMessage) {
    show();
    const auto button = screen_->navigationItem()->rightBarButtonItem();
    ASSERT_NE(nullptr, button);
    screen_->shareTwitterMessage(nullptr);
    const auto composer = std::dynamic_pointer_cast<platform::SLComposeViewController>(doubles::Phone::top());
    ASSERT_NE(nullptr, composer);
    EXPECT_EQ("Try it", composer->initialText());
    EXPECT_EQ(platform::SLServiceTypeTwitter, composer->serviceType());
}

TEST_F(MiscSettings, withoutMessage_hasNoShareButton) {
    screen_->message.clear();
    show();
    EXPECT_EQ(nullptr, screen_->navigationItem()->rightBarButtonItem());
}

}  // namespace
}  // namespace velmora
