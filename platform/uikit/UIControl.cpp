// SPDX-License-Identifier: MIT
#include "platform/uikit/UIControl.h"

#include <utility>

#include "platform/uikit/CallNote.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UIControl)

void UIControl::addTarget_action_forControlEvents(const std::shared_ptr<Object>& target, Action action,
                                                  std::uint64_t events) {
    if (!target || !action) return;
    std::erase_if(registrations_,
                  [](const Registration& registration) { return registration.target.expired(); });
    registrations_.push_back({target, std::move(action), events});
}

void UIControl::sendActionsForControlEvents(std::uint64_t events) {
    // Actions may take this control off the screen, or add others that are not meant for this move.
    const std::shared_ptr<UIControl> self = shared(this);
    const std::vector<Registration> registrations = registrations_;
    for (const Registration& registration : registrations) {
        if ((registration.events & events) == 0) continue;
        const auto target = registration.target.lock();
        if (!target) continue;
        const CallNote note(CallNote::Told::Always, *target, registration.action.selector());
        registration.action(*target, self);
    }
}

}  // namespace platform
