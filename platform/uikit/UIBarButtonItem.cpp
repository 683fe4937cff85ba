// SPDX-License-Identifier: MIT
#include "platform/uikit/UIBarButtonItem.h"

#include <utility>

#include "platform/uikit/CallNote.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UIBarButtonItem)

UIBarButtonItem::UIBarButtonItem(std::string title, std::int64_t style, const std::shared_ptr<Object>& target,
                                 Action action)
    : title_(std::move(title)), style_(style), target_(target), action_(std::move(action)) {}

UIBarButtonItem::UIBarButtonItem(std::shared_ptr<UIImage> image, std::int64_t style,
                                 const std::shared_ptr<Object>& target, Action action)
    : image_(std::move(image)), style_(style), target_(target), action_(std::move(action)) {}

UIBarButtonItem::UIBarButtonItem(std::int64_t systemItem, const std::shared_ptr<Object>& target,
                                 Action action)
    : systemItem_(systemItem), target_(target), action_(std::move(action)) {}

void UIBarButtonItem::press() {
    // The action may replace this very button.
    const auto self = shared(this);
    const auto receiver = target_.lock();
    if (!receiver) return;
    const CallNote note(CallNote::Told::Always, *receiver, action_.selector());
    action_(*receiver, self);
}

}  // namespace platform
