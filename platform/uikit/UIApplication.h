// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/uikit/UIViewController.h"

namespace platform {

inline constexpr std::int64_t UIStatusBarStyleDefault = 0;
inline constexpr std::int64_t UIStatusBarStyleLightContent = 1;

/// The running application: its status bar, its window's first screen, and the way out to other applications.
class UIApplication : public Object {
    PLATFORM_CLASS(UIApplication, Object)

  public:
    static UIApplication& sharedApplication();

    std::int64_t statusBarStyle() const { return statusBarStyle_; }
    void setStatusBarStyle(std::int64_t style) { statusBarStyle_ = style; }

    /// The screen at the bottom of everything; showing it makes it appear. What the old root presents is
    /// dismissed with it. Null closes the window.
    const std::shared_ptr<UIViewController>& rootViewController() const { return root_; }
    void setRootViewController(std::shared_ptr<UIViewController> root);
    /// The root, or what is presented above it and above that, up to the topmost; null without a root.
    std::shared_ptr<UIViewController> topmostPresented() const;

    /// Through the device; false without one.
    bool canOpenURL(const std::string& url) const;
    bool openURL(const std::string& url);

  private:
    std::int64_t statusBarStyle_ = UIStatusBarStyleDefault;
    std::shared_ptr<UIViewController> root_;
};

}  // namespace platform
