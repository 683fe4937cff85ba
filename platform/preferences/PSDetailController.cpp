// SPDX-License-Identifier: MIT
#include "platform/preferences/PSDetailController.h"

#include <utility>

#include "platform/foundation/LogSink.h"

namespace platform {

PLATFORM_REGISTER_CLASS(PSDetailController)

void PSDetailController::setPane(std::shared_ptr<PSEditingPane> pane) {
    if (pane_ == pane) return;
    if (pane_) pane_->removeFromSuperview();
    pane_ = std::move(pane);
    if (!pane_) return;
    pane_->setFrame(view()->bounds());
    view()->addSubview(pane_);
}

void PSDetailController::loadPane() {
    if (pane_ || !specifier() || specifier()->editPaneClass().empty()) return;
    auto pane = ClassRegistry::shared().make<PSEditingPane>(specifier()->editPaneClass());
    if (!pane) {
        log(getClass().name() + ": " + pane.error().localizedDescription);
        return;
    }
    setPane(*pane);
    pane_->setPreferenceSpecifier(specifier());
    pane_->setDelegate(shared(this));
}

void PSDetailController::viewWillAppear(bool animated) {
    PSViewController::viewWillAppear(animated);
    loadPane();
}

}  // namespace platform
