// SPDX-License-Identifier: MIT
#include "settings/application/BundleOpening.h"

#include "device/PhonePaths.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/LogSink.h"
#include "platform/uikit/UIImage.h"
#include "settings/application/BundleErrorController.h"

namespace settings {

using platform::Bundle;
using platform::Class;
using platform::FileManager;
using platform::PSCellType;
using platform::PSSpecifier;
using platform::PSViewController;
using platform::Result;

namespace {

constexpr std::string_view bundleExtension = ".bundle";

std::string directoryName(const Bundle& bundle) {
    return bundle.bundlePath().substr(bundle.bundlePath().rfind('/') + 1);
}

Result<std::shared_ptr<PSViewController>> loadFirstScreen(Bundle& bundle) {
    if (const Result<void> loaded = bundle.load(); !loaded) return std::unexpected(loaded.error());
    const Result<const Class*> principal = bundle.principalClass();
    if (!principal) return std::unexpected(principal.error());
    return platform::ClassRegistry::shared().make<PSViewController>((*principal)->name());
}

}  // namespace

std::vector<std::string> installedBundlePaths() {
    std::vector<std::string> paths;
    const FileManager& files = FileManager::defaultManager();
    const auto names = files.contentsOfDirectoryAtPath(device::phonePaths::preferenceBundles);
    if (!names) return paths;
    for (const std::string& name : *names) {
        if (!name.ends_with(bundleExtension)) continue;
        std::string path =
            platform::stringByAppendingPathComponent(device::phonePaths::preferenceBundles, name);
        // The link to a bundle that has been deleted since leads nowhere.
        if (files.directoryExistsAtPath(path)) paths.push_back(std::move(path));
    }
    return paths;
}

std::string displayNameOfBundle(const Bundle& bundle) {
    for (const std::string_view key : {"CFBundleDisplayName", "CFBundleName"}) {
        const auto entry = bundle.infoDictionary().find(key);
        if (entry == bundle.infoDictionary().end()) continue;
        if (const std::string* name = entry->second.string(); name && !name->empty()) return *name;
    }
    std::string name = directoryName(bundle);
    if (name.ends_with(bundleExtension)) name.resize(name.size() - bundleExtension.size());
    return name;
}

std::shared_ptr<PSSpecifier> specifierForBundle(const std::shared_ptr<Bundle>& bundle) {
    auto specifier = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        displayNameOfBundle(*bundle), nullptr, {}, {}, {}, PSCellType::Link, {});
    specifier->setIdentifier(directoryName(*bundle));
    specifier->setUserInfo(bundle->bundlePath());
    specifier->setProperty_forKey(platform::UIImage::imageNamed_inBundle("icon", bundle), "iconImage");
    return specifier;
}

std::shared_ptr<PSViewController> firstScreenOfBundle(const std::shared_ptr<Bundle>& bundle) {
    std::shared_ptr<PSViewController> screen;
    if (auto made = loadFirstScreen(*bundle)) {
        screen = std::move(*made);
    } else {
        platform::log(made.error().localizedDescription);
        screen =
            std::make_shared<BundleErrorController>(bundle->bundlePath(), made.error().localizedDescription);
    }
    screen->setSpecifier(specifierForBundle(bundle));
    return screen;
}

}  // namespace settings
