// SPDX-License-Identifier: MIT
#include "platform/uikit/UIApplication.h"

#include <utility>

#include "platform/foundation/Device.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UIApplication)

UIApplication& UIApplication::sharedApplication() {
    // Never destroyed: its screens may come from bundles and use services that are gone when the process
    // ends.
    static const auto& application = *new std::shared_ptr<UIApplication>(std::make_shared<UIApplication>());
    return *application;
}

void UIApplication::setRootViewController(std::shared_ptr<UIViewController> root) {
    if (root == root_) return;
    const auto leaving = std::exchange(root_, std::move(root));
    const auto arriving = root_;
    if (leaving) {
        leaving->removePresented(false, UIViewController::Uncover::No);
        leaving->beginAppearanceTransition(false, false);
    }
    if (arriving) arriving->beginAppearanceTransition(true, false);
}

std::shared_ptr<UIViewController> UIApplication::topmostPresented() const {
    auto top = root_;
    while (top && top->presented_) top = top->presented_;
    return top;
}

bool UIApplication::canOpenURL(const std::string& url) const {
    const auto& urls = Device::current().urls;
    return urls && urls->canOpenURL(url);
}

bool UIApplication::openURL(const std::string& url) {
    const auto& urls = Device::current().urls;
    return urls && urls->openURL(url);
}

}  // namespace platform
