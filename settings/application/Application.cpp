// SPDX-License-Identifier: MIT
#include "settings/application/Application.h"

#include <utility>

#include "platform/foundation/Journal.h"
#include "platform/foundation/RunLoop.h"
#include "platform/uikit/UIApplication.h"
#include "settings/application/BundleErrorController.h"
#include "settings/application/BundleOpening.h"
#include "settings/application/RowKeyValue.h"
#include "settings/application/ScreenPath.h"
#include "settings/application/SettingsRootController.h"
#include "settings/application/StoredFiles.h"

namespace settings {

using platform::Bundle;
using platform::UIApplication;

Application::Application(std::string bundlePath, RunningPhone* phone)
    : bundlePath_(std::move(bundlePath)), phone_(phone) {}

Application::~Application() {
    if (!navigation_) return;
    platform::RunLoop::main().setBeforeSleeping({});
    UIApplication::sharedApplication().setRootViewController(nullptr);
}

void Application::start() {
    platform::Journal::shared().start();
    platform::RunLoop::main().setBeforeSleeping([this] { keepUp(); });
    // The application outlives its list: its destructor closes the window.
    list_ = std::make_shared<SettingsRootController>([this](const std::string& path) { openBundle(path); });
    navigation_ = platform::UINavigationController::initWithRootViewController(list_);
    UIApplication::sharedApplication().setRootViewController(navigation_);
    openBundle(bundlePath_);
}

void Application::reopen() {
    leaveScreens();
    openBundle(bundlePath_);
}

platform::Result<std::optional<std::string>> Application::changeDevice(
    const std::vector<std::string>& pairs) {
    if (!phone_) return platform::failure("This phone stays as it is.");
    if (const auto checked = phone_->checkDevice(pairs); !checked) return std::unexpected(checked.error());
    const ScreenPath path = ScreenPath::now();
    leaveScreens();
    const auto changed = phone_->changeDevice(pairs);
    platform::ClassRegistry::shared().loadAgain();
    // The list of bundles has texts and cells of its own.
    list_->reloadSpecifiers();
    std::optional<std::string> ended;
    if (path.entersBundle()) {
        openBundle(bundlePath_);
        ended = path.follow(bundle_);
    }
    if (!changed) return std::unexpected(changed.error());
    return ended;
}

platform::Value Application::handOver() const {
    return platform::Dictionary{{"bundle", bundlePath_},
                                {"list", list_->number()},
                                {"rows", valueOfRowKeys(list_->rowKeys())},
                                {"path", ScreenPath::now().value()},
                                {"lastScreen", platform::UIViewController::lastNumber()},
                                {"lastKey", platform::lastRowKey()}};
}

std::optional<std::string> Application::takeOver(const platform::Value& given) {
    // What another page may still name there is nothing here.
    platform::UIViewController::numberAbove(numberIn(given, "lastScreen"));
    platform::rowKeysAbove(numberIn(given, "lastKey"));
    list_->takeOverNumber(numberIn(given, "list"));
    list_->takeOverRowKeys(rowKeysOfValue(given["rows"]));
    leaveScreens();
    const ScreenPath path = ScreenPath::ofValue(given["path"]);
    if (!path.entersBundle()) return std::nullopt;
    openBundle(given["bundle"].stringOr(bundlePath_));
    // The first screen may have its rows only when all that it has begun is done.
    platform::RunLoop::main().drain();
    return path.follow(bundle_);
}

std::optional<std::string> Application::bundleProblem() const {
    const auto& stack = navigation_->viewControllers();
    if (stack.size() < 2) return std::nullopt;
    const auto* problem = dynamic_cast<const BundleErrorController*>(stack[1].get());
    return problem ? std::optional(problem->reason()) : std::nullopt;
}

void Application::leaveScreens() {
    navigation_->dismissViewControllerAnimated_completion(false, {});
    navigation_->popToRootViewControllerAnimated(false);
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
    if (phone_) phone_->faults().setProfilesPath(storedFilePaths(*bundle_)["profiles"]);
    navigation_->pushViewController_animated(firstScreenOfBundle(bundle_), true);
}

}  // namespace settings
