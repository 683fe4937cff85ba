// SPDX-License-Identifier: MIT
#include "shell/chrome/ThemedChrome.h"

#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UILabel.h"
#include "profile/model/QXUtils.h"
#include "shell/base/BundleImage.h"
#include "shell/base/ProductInfo.h"

namespace quietrix {

using platform::PSViewController;
using platform::UIBarButtonItem;

namespace {

/// Nobody answers `backButtonAction:`; the item only brings the image.
void setLogoAsBackItem(PSViewController& screen) {
    screen.navigationItem()->setBackBarButtonItem(std::make_shared<UIBarButtonItem>(
        bundleImage(screen.getClass(), "Quietrix"), platform::UIBarButtonItemStylePlain,
        screen.shared(&screen), BarAction("backButtonAction:", nullptr)));
}

}  // namespace

std::shared_ptr<UIBarButtonItem> makeShareButton(PSViewController& screen, BarAction action) {
    return std::make_shared<UIBarButtonItem>(bundleImage(screen.getClass(), "twitter"),
                                             platform::UIBarButtonItemStylePlain, screen.shared(&screen),
                                             std::move(action));
}

void fadeInTitleLogo(PSViewController& screen) {
    const auto logo = std::make_shared<platform::UIImageView>(bundleImage(screen.getClass(), "Quietrix"));
    screen.navigationItem()->setTitleView(logo);
    logo->setAlpha(0);
    platform::UIView::animateWithDuration_animations(1.0, [logo] { logo->setAlpha(1); });
}

void setTitleLabel(PSViewController& screen) {
    const auto label = std::make_shared<platform::UILabel>();
    label->setBackgroundColor(platform::UIColor::clearColor());
    label->setFontSize(20);
    label->setShadowColor(platform::UIColor::colorWithWhite_alpha(0, 0.5));
    label->setTextAlignment(platform::NSTextAlignmentCenter);
    label->setTextColor(platform::UIColor::whiteColor());
    label->setText(screen.title());
    label->sizeToFit();
    screen.navigationItem()->setTitleView(label);
}

void chromeDidLoad(PSViewController& screen, BarAction twitterAction, TitleView showTitle) {
    screen.navigationItem()->setRightBarButtonItem_animated(makeShareButton(screen, std::move(twitterAction)),
                                                            true);
    showTitle(screen);
    if (!QXUtils::isIOS11()) setLogoAsBackItem(screen);
    if (currentYear() < 1) currentYear() = yearOfPresentDate();
}

}  // namespace quietrix
