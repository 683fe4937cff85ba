// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/social/SLComposeViewController.h"
#include "platform/uikit/UIAlertController.h"
#include "support/sharing/Sharing.h"
#include "tests/doubles/PluginPhone.h"
#include "tests/doubles/ScreenFixture.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::SLComposeViewController;
using platform::UIAlertController;

/// A screen with the two actions, as each of the product's has them.
class SharingScreen : public platform::PSViewController {
  public:
    void shareAction(const std::shared_ptr<platform::Object>& sender) {
        senderWasNil = sender == nullptr;
        presentShareComposer(*this);
    }
    bool senderWasNil = false;
};

class Sharing : public doubles::ScreenFixture<SharingScreen, doubles::PluginPhone> {
  protected:
    Sharing() { openScreen(doubles::Place::First); }

    std::shared_ptr<UIAlertController> showSheet() {
        showShareSheet(*screen_, platform::method("shareAction:", &SharingScreen::shareAction));
        return alert();
    }
    std::string serviceChosenFor(std::vector<std::string> languages) {
        phone_.facts->languages = std::move(languages);
        required(showSheet())->choose(0);
        const auto composer = std::dynamic_pointer_cast<SLComposeViewController>(doubles::Phone::top());
        if (!composer) return "no composer";
        const std::string service = composer->serviceType();
        composer->finish(SLComposeViewController::Outcome::Cancelled);
        return service;
    }
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
    EXPECT_EQ("Host", required(showSheet())->actions().at(2).title);
}

TEST_F(Sharing, share_sendsNilAndOpensTheComposerWithTheSentence) {
    required(showSheet())->choose(0);
    EXPECT_TRUE(screen_->senderWasNil);
    const auto composer = std::dynamic_pointer_cast<SLComposeViewController>(doubles::Phone::top());
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
    required(showSheet())->choose(1);
    EXPECT_EQ(std::vector<std::string>{"twitter://user?screen_name=velmora"}, phone_.urls->opened);
    EXPECT_EQ(nullptr, alert());
}

TEST_F(Sharing, followWithoutTheApp_opensTheWebPage) {
    required(showSheet())->choose(1);
    EXPECT_EQ(std::vector<std::string>{"https://twitter.com/velmora"}, phone_.urls->opened);
}

TEST_F(Sharing, cancel_onlyClosesTheSheet) {
    required(showSheet())->choose(2);
    EXPECT_EQ(nullptr, alert());
    EXPECT_TRUE(phone_.urls->opened.empty());
}

TEST_F(Sharing, sheet_doesNotKeepTheScreenAlive) {
    const auto sheet = required(showSheet());
    phone_.show(nullptr);
    navigation_ = nullptr;
    const std::weak_ptr<SharingScreen> weak = screen_;
    screen_ = nullptr;
    EXPECT_TRUE(weak.expired());
    sheet->choose(0);
    EXPECT_EQ(nullptr, doubles::Phone::top());
}

}  // namespace
}  // namespace quietrix
