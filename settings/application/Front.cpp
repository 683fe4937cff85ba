// SPDX-License-Identifier: MIT
#include "settings/application/Front.h"

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

Front Front::now() {
    Front front;
    for (const auto& shown : presentationChain()) {
        const auto navigation = std::dynamic_pointer_cast<UINavigationController>(shown);
        if (!front.navigation && !navigation && !front.presented) front.presented = shown;
        if (!navigation) continue;
        if (!front.navigation) {
            front.navigation = navigation;
            front.screen = navigation->topViewController();
        }
        if (navigation->presentingViewController()) ++front.modals;
    }
    return front;
}

std::shared_ptr<PSListController> Front::list() const {
    return std::dynamic_pointer_cast<PSListController>(screen);
}

std::vector<std::shared_ptr<PSListController>> shownLists() {
    std::vector<std::shared_ptr<PSListController>> lists;
    for (const auto& shown : presentationChain()) {
        const auto navigation = std::dynamic_pointer_cast<UINavigationController>(shown);
        if (!navigation) continue;
        for (const auto& screen : navigation->viewControllers()) {
            if (auto list = std::dynamic_pointer_cast<PSListController>(screen))
                lists.push_back(std::move(list));
        }
    }
    return lists;
}

}  // namespace settings
