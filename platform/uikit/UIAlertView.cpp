// SPDX-License-Identifier: MIT
#include "platform/uikit/UIAlertView.h"

#include <utility>

#include "platform/foundation/LogSink.h"
#include "platform/uikit/UIApplication.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UIAlertView)

UIAlertView::UIAlertView(std::optional<std::string> title, std::optional<std::string> message,
                         std::nullptr_t /*delegate*/, const std::optional<std::string>& cancelButtonTitle,
                         const std::vector<std::string>& otherButtonTitles)
    : controller_(std::make_shared<UIAlertController>(std::move(title), std::move(message),
                                                      UIAlertControllerStyleAlert)) {
    if (cancelButtonTitle) controller_->addAction({*cancelButtonTitle, UIAlertActionStyleCancel, {}});
    for (const std::string& other : otherButtonTitles)
        controller_->addAction({other, UIAlertActionStyleDefault, {}});
}

void UIAlertView::show() {
    if (isVisible()) return;
    const auto top = UIApplication::sharedApplication().topmostPresented();
    if (!top) {
        log(getClass().name() + ": There is no window to show \"" + controller_->title().value_or("") +
            "\" in.");
        return;
    }
    top->presentViewController_animated_completion(controller_, true, {});
}

}  // namespace platform
