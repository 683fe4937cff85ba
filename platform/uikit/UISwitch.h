// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIControl.h"

namespace platform {

/// An on/off switch, 51 by 31 points.
class UISwitch : public UIControl {
    PLATFORM_CLASS(UISwitch, UIControl)

  public:
    UISwitch() : UIControl(Rect{0, 0, 51, 31}) {}

    bool isOn() const { return on_; }
    /// Sends no action: only the user's own moves do.
    void setOn(bool on) { on_ = on; }
    const std::shared_ptr<UIColor>& onTintColor() const { return onTintColor_; }
    void setOnTintColor(std::shared_ptr<UIColor> color) { onTintColor_ = std::move(color); }

  private:
    bool on_ = false;
    std::shared_ptr<UIColor> onTintColor_;
};

}  // namespace platform
