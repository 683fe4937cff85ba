// SPDX-License-Identifier: MIT
#include "platform/uikit/UINavigationController.h"

#include <ranges>

#include "platform/foundation/Journal.h"
#include "platform/foundation/LogSink.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UINavigationController)

std::shared_ptr<UINavigationController> UINavigationController::initWithRootViewController(
    const std::shared_ptr<UIViewController>& root) {
    auto navigation = std::make_shared<UINavigationController>();
    if (root) {
        navigation->stack_.push_back(root);
        root->setParentViewController(navigation);
    }
    return navigation;
}

const std::shared_ptr<UINavigationBar>& UINavigationController::navigationBar() {
    if (!bar_) bar_ = std::make_shared<UINavigationBar>();
    return bar_;
}

void UINavigationController::pushViewController_animated(const std::shared_ptr<UIViewController>& screen,
                                                         bool animated) {
    if (!screen) {
        log("UINavigationController: there is no screen to push.");
        return;
    }
    if (screen.get() == this || screen->parentViewController() || screen->presentingViewController()) {
        log("UINavigationController: the screen " + screen->getClass().name() + " is shown already.");
        return;
    }
    const auto self = shared(this);
    const auto arriving = screen;
    const auto leaving = topViewController();
    const Journal::Course course("push", {{"class", arriving->getClass().name()}});
    stack_.push_back(arriving);
    arriving->setParentViewController(self);
    if (!isVisible()) return;
    arriving->view();
    if (leaving) leaving->beginAppearanceTransition(false, animated);
    arriving->beginAppearanceTransition(true, animated);
}

std::shared_ptr<UIViewController> UINavigationController::popViewControllerAnimated(bool animated) {
    if (stack_.size() < 2) return nullptr;
    auto leaving = stack_.back();
    stack_.pop_back();
    popped({leaving}, animated);
    return leaving;
}

void UINavigationController::popToRootViewControllerAnimated(bool animated) {
    if (stack_.size() < 2) return;
    const std::vector<std::shared_ptr<UIViewController>> leaving(stack_.begin() + 1, stack_.end());
    stack_.resize(1);
    popped(leaving, animated);
}

void UINavigationController::popped(const std::vector<std::shared_ptr<UIViewController>>& leaving,
                                    bool animated) {
    const auto self = shared(this);
    const auto className = [](const std::shared_ptr<UIViewController>& screen) {
        return Dictionary{{"class", screen->getClass().name()}};
    };
    // Of several the lowest goes last, and uncovers the screen beneath.
    for (const auto& screen : std::views::reverse(leaving | std::views::drop(1)))
        Journal::shared().record("pop", className(screen));
    const Journal::Course course("pop", className(leaving.front()));
    // A leaving screen still finds this controller while it is told: it restores the bar that it had
    // coloured.
    leaving.back()->beginAppearanceTransition(false, animated);
    if (isVisible() && !stack_.empty()) stack_.back()->beginAppearanceTransition(true, animated);
    for (const auto& screen : leaving) screen->setParentViewController(nullptr);
}

void UINavigationController::loadView() {
    UIViewController::loadView();
    if (const auto top = topViewController()) top->view();
}

void UINavigationController::viewWillAppear(bool animated) {
    UIViewController::viewWillAppear(animated);
    if (const auto top = topViewController()) top->beginAppearanceTransition(true, animated);
}

void UINavigationController::viewWillDisappear(bool animated) {
    UIViewController::viewWillDisappear(animated);
    if (const auto top = topViewController()) top->beginAppearanceTransition(false, animated);
}

}  // namespace platform
