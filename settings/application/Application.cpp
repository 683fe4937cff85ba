// SPDX-License-Identifier: MIT
#include "settings/application/Application.h"

#include <utility>

#include "platform/foundation/Journal.h"
#include "platform/foundation/RunLoop.h"
#include "platform/uikit/UIApplication.h"
#include "settings/application/BundleOpening.h"
#include "settings/application/SettingsRootController.h"

namespace settings {

using platform::Bundle;
using platform::UIApplication;

Application::Application(std::string bundlePath, std::shared_ptr<device::VirtualClock> clock)
    : bundlePath_(std::move(bundlePath)), clock_(std::move(clock)) {}

Application::~Application() {
    if (!navigation_) return;
    platform::RunLoop::main().setBeforeSleeping({});
    UIApplication::sharedApplication().setRootViewController(nullptr);
}

void Application::start() {
    platform::Journal::shared().start();
    platform::RunLoop::main().setBeforeSleeping([this] { keepUp(); });
    // The application outlives its list: its destructor closes the window.
    const auto list =
        std::make_shared<SettingsRootController>([this](const std::string& path) { openBundle(path); });
    navigation_ = platform::UINavigationController::initWithRootViewController(list);
    UIApplication::sharedApplication().setRootViewController(navigation_);
    openBundle(bundlePath_);
}

void Application::reopen() {
    navigation_->dismissViewControllerAnimated_completion(false, {});
    navigation_->popToRootViewControllerAnimated(false);
    openBundle(bundlePath_);
}

void Application::keepUp() {
    // Nothing is in flight then, so that each event has its outcome.
    platform::RunLoop::main().drain();
    events_.collect();
    events_.trim();
}

void Application::openBundle(const std::string& path) {
    bundlePath_ = path;
    bundle_ = Bundle::bundleWithPath(path);
    // A directory that has gone since gives the screen that says so.
    if (!bundle_) bundle_ = std::make_shared<Bundle>(path);
    navigation_->pushViewController_animated(firstScreenOfBundle(bundle_), true);
}

}  // namespace settings
