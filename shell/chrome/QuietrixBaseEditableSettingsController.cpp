// SPDX-License-Identifier: MIT
#include "shell/chrome/QuietrixBaseEditableSettingsController.h"

#include "shell/chrome/CopyRight.h"
#include "support/sharing/Sharing.h"

namespace quietrix {

using platform::method;
using platform::Object;

PLATFORM_REGISTER_CLASS(QuietrixBaseEditableSettingsController)

void QuietrixBaseEditableSettingsController::viewDidLoad() {
    PSEditableListController::viewDidLoad();
    chromeDidLoad(
        *this,
        method("__tessaneTwitterAction:", &QuietrixBaseEditableSettingsController::__tessaneTwitterAction),
        fadeInTitleLogo);
    updateCopyRightSpecifier();
}

void QuietrixBaseEditableSettingsController::viewWillAppear(bool animated) {
    PSEditableListController::viewWillAppear(animated);
    chromeWillAppear(*this, chrome_);
}

void QuietrixBaseEditableSettingsController::viewWillDisappear(bool animated) {
    PSEditableListController::viewWillDisappear(animated);
    chromeWillDisappear(*this, chrome_);
}

void QuietrixBaseEditableSettingsController::updateCopyRightSpecifier() {
    updateCopyRightFooter(*this);
}

void QuietrixBaseEditableSettingsController::shareAction(const std::shared_ptr<Object>&) {
    presentShareComposer(*this);
}

void QuietrixBaseEditableSettingsController::__tessaneTwitterAction(const std::shared_ptr<Object>&) {
    showShareSheet(*this, method("shareAction:", &QuietrixBaseEditableSettingsController::shareAction));
}

}  // namespace quietrix
