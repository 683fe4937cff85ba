// SPDX-License-Identifier: MIT
#include "velmora/VMNavigationBarColors.h"

#include <utility>

#include "platform/uikit/UIApplication.h"

namespace velmora {

using platform::UIApplication;
using platform::UIColor;

std::shared_ptr<platform::UINavigationController> outermostNavigationController(
    const platform::UIViewController& screen) {
    auto navigation = screen.navigationController();
    while (navigation) {
        auto outer = navigation->navigationController();
        if (!outer) break;
        navigation = std::move(outer);
    }
    return navigation;
}

void applyBarColors(const platform::UIViewController& screen, std::shared_ptr<UIColor> ground,
                    SavedBarColors& saved) {
    auto& application = UIApplication::sharedApplication();
    saved.prevStatubarStyle = application.statusBarStyle();
    application.setStatusBarStyle(platform::UIStatusBarStyleLightContent);
    // The colours of an earlier appearance are none of this one's, even when there is no bar.
    saved.prevTintcolor = nullptr;
    saved.prevBarTintcolor = nullptr;
    const auto navigation = outermostNavigationController(screen);
    if (!navigation) return;
    const auto& bar = navigation->navigationBar();
    saved.prevTintcolor = bar->tintColor();
    saved.prevBarTintcolor = bar->barTintColor();
    bar->setTintColor(UIColor::whiteColor());
    bar->setBarTintColor(std::move(ground));
}

void restoreBarColors(const platform::UIViewController& screen, const SavedBarColors& saved) {
    UIApplication::sharedApplication().setStatusBarStyle(saved.prevStatubarStyle);
    const auto navigation = outermostNavigationController(screen);
    if (!navigation) return;
    navigation->navigationBar()->setTintColor(saved.prevTintcolor);
    navigation->navigationBar()->setBarTintColor(saved.prevBarTintcolor);
}

}  // namespace velmora
