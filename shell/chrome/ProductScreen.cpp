// SPDX-License-Identifier: MIT
#include "shell/chrome/ProductScreen.h"

#include "shell/base/BundleImage.h"
#include "shell/base/Localization.h"
#include "shell/base/Lookups.h"
#include "shell/base/NavBarColor.h"
#include "shell/base/ProductInfo.h"
#include "shell/chrome/CopyRight.h"
#include "support/sharing/Sharing.h"

namespace quietrix {

std::shared_ptr<platform::UIColor> ProductScreen::customNavigationBarColor() const {
    return navBarPatternColor(getClass());
}

std::string ProductScreen::twitterMessage() const {
    return localizedInMainBundle(shareSentence);
}

std::shared_ptr<platform::UIImage> ProductScreen::twitterImage() const {
    return bundleImage(getClass(), "twitter");
}

std::string ProductScreen::copryRightSpecifierText(const std::shared_ptr<platform::PSSpecifier>&) {
    if (currentYear() < 1) currentYear() = yearOfPresentDate();
    return versionNotice(currentYear());
}

std::shared_ptr<platform::PSSpecifier> ProductScreen::copyRightSpecifier() {
    return vm__specifierByIdentifier_identifier(*this, *rows(), copyRightIdentifier);
}

}  // namespace quietrix
