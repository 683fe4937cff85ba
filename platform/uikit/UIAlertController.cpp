// SPDX-License-Identifier: MIT
#include "platform/uikit/UIAlertController.h"

#include <utility>

namespace platform {

PLATFORM_REGISTER_CLASS(UIAlertController)

const UIViewController* UIAlertController::handling_ = nullptr;

UIAlertController::UIAlertController(std::optional<std::string> title, std::optional<std::string> message,
                                     std::int64_t style)
    : alertTitle_(std::move(title)), message_(std::move(message)), style_(style) {}

void UIAlertController::choose(std::size_t index) {
    if (index >= actions_.size()) return;
    // Both outlive the handler: this alert, which its holder lets go, and the screen that handling_ points
    // to.
    const auto self = shared(this);
    const auto asker = asker_.lock();
    const auto handler = actions_[index].handler;
    if (!dismissItself(true) || !handler) return;
    // A handler may press a button of another alert, so the outer one's screen comes back after it.
    const auto* outer = std::exchange(handling_, asker.get());
    handler();
    handling_ = outer;
}

}  // namespace platform
