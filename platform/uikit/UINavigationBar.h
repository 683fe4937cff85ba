// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIView.h"

namespace platform {

/// The bar of a navigation controller: `tintColor` for its buttons, `barTintColor` for its background. Null
/// colours give the system's look.
class UINavigationBar : public UIView {
    PLATFORM_CLASS(UINavigationBar, UIView)

  public:
    const std::shared_ptr<UIColor>& barTintColor() const { return barTintColor_; }
    void setBarTintColor(std::shared_ptr<UIColor> color) { barTintColor_ = std::move(color); }

  private:
    std::shared_ptr<UIColor> barTintColor_;
};

}  // namespace platform
