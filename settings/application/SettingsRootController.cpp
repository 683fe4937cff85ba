// SPDX-License-Identifier: MIT
#include "settings/application/SettingsRootController.h"

#include <utility>

#include "settings/application/BundleOpening.h"

namespace settings {

using platform::Bundle;
using platform::IndexPath;

PLATFORM_REGISTER_ABSTRACT_CLASS(SettingsRootController)

SettingsRootController::SettingsRootController(Opener opener) : opener_(std::move(opener)) {}

std::optional<std::string> SettingsRootController::title() const {
    return Bundle::mainBundle()->localizedStringForKey_value_table("Settings", {}, {});
}

platform::SpecifierArray SettingsRootController::specifiers() {
    if (specifiers_) return specifiers_;
    specifiers_ = std::make_shared<platform::SpecifierList>();
    specifiers_->push_back(platform::PSSpecifier::emptyGroupSpecifier());
    for (const std::string& path : installedBundlePaths()) {
        if (const auto bundle = Bundle::bundleWithPath(path))
            specifiers_->push_back(specifierForBundle(bundle));
    }
    return specifiers_;
}

void SettingsRootController::tableView_didSelectRowAtIndexPath(
    const std::shared_ptr<platform::UITableView>& /*table*/, IndexPath path) {
    if (const std::string bundlePath = bundlePathAt(path); !bundlePath.empty()) opener_(bundlePath);
}

bool SettingsRootController::rowCanBeSelected(IndexPath path) {
    return !bundlePathAt(path).empty();
}

std::string SettingsRootController::bundlePathAt(IndexPath path) {
    const auto specifier = specifierAtIndex(indexForRow_inGroup(path.row, path.section));
    return specifier && !specifier->isGroup() ? specifier->userInfo().stringOr() : std::string();
}

}  // namespace settings
