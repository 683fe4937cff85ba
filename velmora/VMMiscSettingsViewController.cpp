// SPDX-License-Identifier: MIT
#include "velmora/VMMiscSettingsViewController.h"

#include <algorithm>

#include "platform/uikit/UIBarButtonItem.h"
#include "velmora/VMShareComposer.h"

namespace velmora {

using platform::PSSpecifier;

PLATFORM_REGISTER_CLASS(VMMiscSettingsViewController)

platform::SpecifierArray VMMiscSettingsViewController::rows() {
    auto list = PSListController::rows();
    if (copyRightRow_ && !list->empty() && list->back() == copyRightRow_) return list;
    if (!copyRightRow_) {
        copyRightRow_ = PSSpecifier::emptyGroupSpecifier();
        copyRightRow_->setIdentifier(std::string(copyRightHeaderIdentifier));
    }
    std::erase(*list, copyRightRow_);
    list->push_back(copyRightRow_);
    const std::string notice = copryRightSpecifierText(copyRightRow_);
    copyRightRow_->setProperty_forKey(notice.empty() ? platform::Value() : platform::Value(notice),
                                      "footerText");
    return list;
}

void VMMiscSettingsViewController::viewDidLoad() {
    PSListController::viewDidLoad();
    if (twitterMessage().empty()) return;
    navigationItem()->setRightBarButtonItem_animated(
        std::make_shared<platform::UIBarButtonItem>(
            twitterImage(), platform::UIBarButtonItemStylePlain, shared(this),
            platform::method("shareTwitterMessage:", &VMMiscSettingsViewController::shareTwitterMessage)),
        true);
}

void VMMiscSettingsViewController::viewWillAppear(bool animated) {
    PSListController::viewWillAppear(animated);
    // The answer may change while the screen is shown; what was put on is what is taken off.
    wearsCustomColor_ = hasCustomNavigationBarColor();
    if (wearsCustomColor_) applyBarColors(*this, customNavigationBarColor(), savedColors_);
}

void VMMiscSettingsViewController::viewWillDisappear(bool animated) {
    PSListController::viewWillDisappear(animated);
    if (wearsCustomColor_) restoreBarColors(*this, savedColors_);
}

void VMMiscSettingsViewController::shareTwitterMessage(const std::shared_ptr<platform::Object>&) {
    presentShareComposer(*this, twitterMessage());
}

}  // namespace velmora
