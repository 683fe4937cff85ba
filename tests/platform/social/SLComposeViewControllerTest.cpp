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

class Composer : public testing::Test, public doubles::ShownScreens {
  protected:
    std::shared_ptr<SLComposeViewController> present(std::string_view service, std::string text) {
        auto composer = SLComposeViewController::composeViewControllerForServiceType(service);
        composer->setInitialText(std::move(text));
        root->presentViewController_animated_completion(composer, true, {});
        return composer;
    }
};

TEST_F(Composer, sentPost_opensTheServicesPageWithTheTextEncoded) {
    present(SLServiceTypeTwitter, "I'm #1 & 100% ~ a-b_c.d\n😘")
        ->finish(SLComposeViewController::Outcome::Sent);
    EXPECT_EQ(navigation, top());
    present(SLServiceTypeSinaWeibo, "静 音")->finish(SLComposeViewController::Outcome::Sent);
    EXPECT_EQ((Lines{"https://twitter.com/intent/tweet?text="
                     "I%27m%20%231%20%26%20100%25%20~%20a-b_c.d%0A%F0%9F%98%98",
                     "https://service.weibo.com/share/share.php?title=%E9%9D%99%20%E9%9F%B3"}),
              phone.urls->opened);
}

TEST_F(Composer, cancelledPost_opensNothing) {
    present(SLServiceTypeTwitter, "text")->finish(SLComposeViewController::Outcome::Cancelled);
    EXPECT_EQ(navigation, top());
    EXPECT_TRUE(phone.urls->opened.empty());
}

TEST_F(Composer, composerThatIsNotShown_cannotBeEnded) {
    const auto composer = present(SLServiceTypeTwitter, "text");
    composer->finish(SLComposeViewController::Outcome::Cancelled);
    composer->finish(SLComposeViewController::Outcome::Sent);
    EXPECT_TRUE(phone.urls->opened.empty());
    EXPECT_EQ(1U, phone.takeEvents("dismiss").size());
}

TEST_F(Composer, composerBeneathAnAlert_endsWithIt) {
    const auto composer = present(SLServiceTypeTwitter, "text");
    root->presentViewController_animated_completion(
        std::make_shared<UIAlertController>("Error", std::nullopt, UIAlertControllerStyleAlert), true, {});
    composer->finish(SLComposeViewController::Outcome::Cancelled);
    EXPECT_EQ(navigation, top());
}

TEST_F(Composer, serviceWithoutAPageOrAnAddressNobodyTakes_isLogged) {
    present("SLServiceTypeOther", "text")->finish(SLComposeViewController::Outcome::Sent);
    EXPECT_EQ(1U, phone.log->lines().size());
    phone.urls->openable.clear();
    present(SLServiceTypeTwitter, "text")->finish(SLComposeViewController::Outcome::Sent);
    EXPECT_EQ(2U, phone.log->lines().size());
}

TEST_F(Composer, composer_coversNothingAndIsFreedWhenItEnds) {
    const std::weak_ptr<SLComposeViewController> gone = present(SLServiceTypeTwitter, "text");
    EXPECT_TRUE(root->isVisible());
    ASSERT_FALSE(gone.expired());
    required(gone.lock())->finish(SLComposeViewController::Outcome::Sent);
    EXPECT_TRUE(gone.expired());
}

}  // namespace
}  // namespace platform
