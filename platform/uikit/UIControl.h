// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "platform/foundation/Method.h"
#include "platform/uikit/UIView.h"

namespace platform {

inline constexpr std::uint64_t UIControlEventValueChanged = 4096;

/// A view that the user moves. Targets are held weakly.
class UIControl : public UIView {
    PLATFORM_CLASS(UIControl, UIView)

  public:
    /// The action's argument is the control that sends it.
    using Action = Method<void(const std::shared_ptr<Object>&)>;

    using UIView::UIView;

    bool isEnabled() const { return enabled_; }
    void setEnabled(bool enabled) { enabled_ = enabled; }
    void addTarget_action_forControlEvents(const std::shared_ptr<Object>& target, Action action,
                                           std::uint64_t events);
    /// Calls every action registered for one of the events, in the order of registration.
    void sendActionsForControlEvents(std::uint64_t events);

  private:
    struct Registration {
        std::weak_ptr<Object> target;
        Action action;
        std::uint64_t events;
    };
    bool enabled_ = true;
    std::vector<Registration> registrations_;
};

}  // namespace platform
