// SPDX-License-Identifier: MIT
#include "shell/base/ErrorAlert.h"

#include "platform/uikit/UIAlertController.h"
#include "shell/base/Localization.h"

namespace quietrix {

using platform::UIAlertController;

void qx_showError(platform::PSViewController& screen, const std::optional<platform::Error>& error) {
    std::optional<std::string> message;
    if (error) message = error->localizedDescription;
    const auto alert = std::make_shared<UIAlertController>(localized("Error"), std::move(message),
                                                           platform::UIAlertControllerStyleAlert);
    alert->addAction({localized("Close"), platform::UIAlertActionStyleCancel, [weak = screen.weak(&screen)] {
                          if (const auto self = weak.lock()) {
                              self->dismissViewControllerAnimated_completion(true, nullptr);
                          }
                      }});
    screen.presentViewController_animated_completion(alert, true, nullptr);
}

std::function<void(const platform::Error&)> errorShownOn(platform::PSViewController& screen, Screen waiting) {
    return [weak = screen.weak(&screen),
            kept = waiting == Screen::Kept ? screen.shared(&screen) : nullptr](const platform::Error& error) {
        if (const auto self = weak.lock()) qx_showError(*self, error);
    };
}

}  // namespace quietrix
