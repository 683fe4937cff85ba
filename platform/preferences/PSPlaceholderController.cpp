// SPDX-License-Identifier: MIT
#include "platform/preferences/PSPlaceholderController.h"

#include "platform/foundation/LogSink.h"
#include "platform/uikit/UINavigationController.h"

namespace platform {

PLATFORM_REGISTER_CLASS(PSPlaceholderController)

void PSPlaceholderController::viewWillAppear(bool animated) {
    PSViewController::viewWillAppear(animated);
    const auto navigation = navigationController();
    if (!navigation || !navigation->presentingViewController()) return;
    if (navigation->viewControllers().front().get() != this) return;
    const auto done = std::make_shared<UIBarButtonItem>(
        UIBarButtonSystemItemDone, shared(this), method("doneAction:", &PSPlaceholderController::doneAction));
    navigationItem()->setRightBarButtonItem_animated(done, false);
}

void PSPlaceholderController::doneAction(const std::shared_ptr<Object>& /*sender*/) {
    dismissViewControllerAnimated_completion(true, {});
}

std::shared_ptr<PSViewController> makeViewController(std::string_view className) {
    auto screen = ClassRegistry::shared().make<PSViewController>(className);
    if (screen) return *screen;
    log("PSListController: " + screen.error().localizedDescription);
    return std::make_shared<PSPlaceholderController>();
}

}  // namespace platform
