// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/social/SLComposeViewController.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UINavigationController.h"
#include "support/sharing/Sharing.h"
#include "tests/shell/phone/PluginPhone.h"

namespace quietrix {
namespace {

using platform::SLComposeViewController;
using platform::UIAlertController;
using platform::UIApplication;

/// A screen with the two actions, as each of the product's has them.
class SharingScreen : public platform::PSViewController {
  public:
    void shareAction(const std::shared_ptr<platform::Object>& sender) {
        senderWasNil = sender == nullptr;
        presentShareComposer(*this);
    }
    bool senderWasNil = false;
};

class Sharing : public testing::Test {
  protected:
    Sharing() { phone_.show(screen_); }

    std::shared_ptr<UIAlertController> showSheet() {
        showShareSheet(*screen_, platform::method("shareAction:", &SharingScreen::shareAction));
        return std::dynamic_pointer_cast<UIAlertController>(top());
    }
    static std::shared_ptr<platform::UIViewController> top() {
        return UIApplication::sharedApplication().topmostPresented();
    }
    std::string serviceChosenFor(std::vector<std::string> languages) {
        phone_.facts->languages = std::move(languages);
        showSheet()->choose(0);
        const auto composer = std::dynamic_pointer_cast<SLComposeViewController>(top());
        if (!composer) return "no composer";
        const std::string service = composer->serviceType();
        composer->finish(SLComposeViewController::Outcome::Cancelled);
        return service;
    }

    doubles::PluginPhone phone_;
    std::shared_ptr<SharingScreen> screen_ = std::make_shared<SharingScreen>();
};

TEST_F(Sharing, sheet_hasThreeItemsInOrder) {
    const auto sheet = showSheet();
    ASSERT_NE(nullptr, sheet);
    EXPECT_EQ(platform::UIAlertControllerStyleActionSheet, sheet->preferredStyle());
    EXPECT_EQ(std::nullopt, sheet->title());
    EXPECT_EQ(std::nullopt, sheet->message());
    ASSERT_EQ(3U, sheet->actions().size());
    EXPECT_EQ("Share \xF0\x9F\x98\x98", sheet->actions()[0].title);
    EXPECT_EQ("Follow @velmora", sheet->actions()[1].title);
    EXPECT_EQ("Cancel", sheet->actions()[2].title);
    EXPECT_EQ(platform::UIAlertActionStyleDefault, sheet->actions()[0].style);
    EXPECT_EQ(platform::UIAlertActionStyleDefault, sheet->actions()[1].style);
    EXPECT_EQ(platform::UIAlertActionStyleCancel, sheet->actions()[2].style);
}

TEST_F(Sharing, sheetTexts_comeFromTheMainBundleOnly) {
    phone_.facts->languages = {"de"};
    phone_.files->put("/Applications/Settings.app/de.lproj/Localizable.strings", "\"Cancel\" = \"Host\";");
    EXPECT_EQ("Host", showSheet()->actions()[2].title);
}

TEST_F(Sharing, share_sendsNilAndOpensTheComposerWithTheSentence) {
    showSheet()->choose(0);
    EXPECT_TRUE(screen_->senderWasNil);
    const auto composer = std::dynamic_pointer_cast<SLComposeViewController>(top());
    ASSERT_NE(nullptr, composer);
    EXPECT_EQ(
        "I'm Loving #Quietrix, which automatically silence your iPhone by syncing with your calendar on your "
        "iDevice.",
        composer->initialText());
}

TEST_F(Sharing, onlyPlainSimplifiedChineseFirst_choosesWeibo) {
    EXPECT_EQ("SLServiceTypeSinaWeibo", serviceChosenFor({"zh-Hans", "en"}));
    EXPECT_EQ("SLServiceTypeTwitter", serviceChosenFor({"zh-Hans-CN"}));
    EXPECT_EQ("SLServiceTypeTwitter", serviceChosenFor({"en", "zh-Hans"}));
}

TEST_F(Sharing, followWithTheApp_opensTheApp) {
    phone_.urls->openable.push_back("twitter://");
    showSheet()->choose(1);
    EXPECT_EQ(std::vector<std::string>{"twitter://user?screen_name=velmora"}, phone_.urls->opened);
    EXPECT_EQ(nullptr, std::dynamic_pointer_cast<UIAlertController>(top()));
}

TEST_F(Sharing, followWithoutTheApp_opensTheWebPage) {
    showSheet()->choose(1);
    EXPECT_EQ(std::vector<std::string>{"https://twitter.com/velmora"}, phone_.urls->opened);
}

TEST_F(Sharing, cancel_onlyClosesTheSheet) {
    showSheet()->choose(2);
    EXPECT_EQ(nullptr, std::dynamic_pointer_cast<UIAlertController>(top()));
    EXPECT_TRUE(phone_.urls->opened.empty());
}

TEST_F(Sharing, sheet_doesNotKeepTheScreenAlive) {
    const auto sheet = showSheet();
    UIApplication::sharedApplication().setRootViewController(nullptr);
    const std::weak_ptr<SharingScreen> weak = screen_;
    screen_ = nullptr;
    EXPECT_TRUE(weak.expired());
    sheet->choose(0);
    EXPECT_EQ(nullptr, top());
}

}  // namespace
}  // namespace quietrix
