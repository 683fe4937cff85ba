// SPDX-License-Identifier: MIT
#include "tests/doubles/PluginPhone.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/foundation/Bundle.h"
#include "profile/model/QXProfilesManager.h"
#include "shell/base/Localization.h"
#include "shell/base/ProductInfo.h"

namespace doubles {

namespace {

constexpr const char* mainBundlePath = "/Applications/Settings.app";
constexpr const char* speakerImages = "/System/Library/PrivateFrameworks/PreferencesUI.framework";

platform::Data contents(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Copies a directory of this machine to the phone; the phone paths of what was copied.
std::vector<std::string> copyTree(MemoryFileSystem& files, const std::filesystem::path& from,
                                  const std::string& to) {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(from)) {
        if (!entry.is_regular_file()) continue;
        paths.push_back(to + "/" + entry.path().lexically_relative(from).generic_string());
        files.put(paths.back(), contents(entry.path()));
    }
    return paths;
}

void forgetProcessWideState() {
    quietrix::currentYear() = 0;
    quietrix::productInfoDict() = nullptr;
    quietrix::QXProfilesManager::resetSharedManager();
}

}  // namespace

PluginPhone::PluginPhone() {
    const std::filesystem::path tree = QUIETRIX_SOURCE_DIR;
    pluginFiles_ = copyTree(*files, tree / "resources", std::string(quietrix::bundlePath));
    copyTree(*files, tree / "settings" / "resources", mainBundlePath);
    for (const auto* name :
         {"SpeakerMute@2x.png", "SpeakerMute@3x.png", "SpeakerMax@2x.png", "SpeakerMax@3x.png"}) {
        files->put(std::string(speakerImages) + "/" + name,
                   contents(tree / "settings" / "resources" / "root" / name));
    }
    platform::Bundle::setMainBundlePath(mainBundlePath);
    platform::Bundle::setBundlePathForLinkedClasses(std::string(quietrix::bundlePath));
    forgetProcessWideState();
    takeEvents();
}

PluginPhone::~PluginPhone() {
    forgetProcessWideState();
    platform::Bundle::setMainBundlePath({});
    platform::Bundle::setBundlePathForLinkedClasses({});
}

void PluginPhone::removePluginBundle() {
    for (const auto& path : pluginFiles_) (void)files->remove(path);
    (void)files->remove(quietrix::bundlePath);
}

std::string productVersion() {
    return QUIETRIX_VERSION;
}

std::string rowNames(platform::PSListController& screen) {
    std::string names;
    for (const auto& row : *screen.specifiers()) {
        if (!names.empty()) names += ", ";
        names += row->name().value_or("-");
    }
    return names;
}

std::string nameOf(const std::shared_ptr<platform::UIImage>& image) {
    return image ? image->name() : "none";
}

std::string nameOfPattern(const std::shared_ptr<platform::UIColor>& color) {
    return color ? nameOf(color->patternImage()) : "none";
}

std::string nameOfImage(const std::shared_ptr<platform::UIBarButtonItem>& button) {
    return button ? nameOf(button->image()) : "none";
}

std::string joined(const std::vector<platform::Dictionary>& events, std::string_view key) {
    std::string text;
    for (const auto& event : events) {
        if (!text.empty()) text += ", ";
        text += platform::Value(event)[key].description();
    }
    return text;
}

}  // namespace doubles
