// SPDX-License-Identifier: MIT
#include "settings/application/TopScreen.h"

#include "platform/uikit/UIApplication.h"

namespace settings {

using platform::PSListController;
using platform::UIApplication;
using platform::UINavigationController;
using platform::UIViewController;

namespace {

/// What is shown, the topmost first, down to the window's root.
std::vector<std::shared_ptr<UIViewController>> presentationChain() {
    std::vector<std::shared_ptr<UIViewController>> chain;
    for (auto screen = UIApplication::sharedApplication().topmostPresented(); screen;
         screen = screen->presentingViewController()) {
        // The presenting side of a link is the outermost controller: a screen on a stack stands for its
        // stack.
        while (const auto parent = screen->parentViewController()) screen = parent;
        chain.push_back(screen);
    }
    return chain;
}

}  // namespace

TopScreen TopScreen::now() {
    TopScreen top;
    for (const auto& shown : presentationChain()) {
        const auto navigation = std::dynamic_pointer_cast<UINavigationController>(shown);
        if (!top.navigation && !navigation && !top.presented) top.presented = shown;
        if (!navigation) continue;
        if (!top.navigation) {
            top.navigation = navigation;
            top.screen = navigation->topViewController();
        }
        if (navigation->presentingViewController()) ++top.modals;
    }
    return top;
}

std::shared_ptr<PSListController> TopScreen::list() const {
    return std::dynamic_pointer_cast<PSListController>(screen);
}

std::vector<std::shared_ptr<UIViewController>> shownScreens() {
    std::vector<std::shared_ptr<UIViewController>> screens;
    for (const auto& shown : presentationChain()) {
        const auto navigation = std::dynamic_pointer_cast<UINavigationController>(shown);
        if (!navigation) continue;
        const auto& stack = navigation->viewControllers();
        screens.insert(screens.end(), stack.begin(), stack.end());
    }
    return screens;
}

std::vector<std::shared_ptr<PSListController>> shownLists() {
    std::vector<std::shared_ptr<PSListController>> lists;
    for (const auto& screen : shownScreens()) {
        if (auto list = std::dynamic_pointer_cast<PSListController>(screen)) lists.push_back(std::move(list));
    }
    return lists;
}

}  // namespace settings
