// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "platform/uikit/UINavigationBar.h"
#include "platform/uikit/UIViewController.h"

namespace platform {

/// A stack of screens under one bar. Each push and pop is written to the journal; the leaving screen's
/// viewWillDisappear runs before the arriving one's viewWillAppear. A stack that is not shown yet (the
/// controller is neither the window's root nor presented) sends neither until it is.
class UINavigationController : public UIViewController {
    PLATFORM_CLASS(UINavigationController, UIViewController)

  public:
    /// An empty stack. A screen for its bottom comes through initWithRootViewController, as a constructor
    /// cannot yet hand out weak links to itself.
    UINavigationController() = default;
    /// A stack with that screen at its bottom, which journals no push; an empty one for null.
    static std::shared_ptr<UINavigationController> initWithRootViewController(
        const std::shared_ptr<UIViewController>& root);

    const std::vector<std::shared_ptr<UIViewController>>& viewControllers() const { return stack_; }
    std::shared_ptr<UIViewController> topViewController() const {
        return stack_.empty() ? nullptr : stack_.back();
    }
    const std::shared_ptr<UINavigationBar>& navigationBar();

    /// Null, or a screen that is on a stack or presented already, is logged and ignored.
    void pushViewController_animated(const std::shared_ptr<UIViewController>& screen, bool animated);
    /// The screen taken off; null when only the root is left.
    std::shared_ptr<UIViewController> popViewControllerAnimated(bool animated);
    /// Takes everything above the root off, topmost first; only the topmost was shown and disappears.
    void popToRootViewControllerAnimated(bool animated);

    bool isFullScreen() const override { return true; }
    /// Makes the top screen's view too.
    void loadView() override;
    /// Passed on to the top screen.
    void viewWillAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;

  private:
    /// The end of both pops, after the stack was shortened: `leaving` holds what was taken off, the bottom
    /// first.
    void popped(const std::vector<std::shared_ptr<UIViewController>>& leaving, bool animated);

    std::vector<std::shared_ptr<UIViewController>> stack_;
    std::shared_ptr<UINavigationBar> bar_;
};

}  // namespace platform
