// SPDX-License-Identifier: MIT
#include "platform/foundation/Bundle.h"

#include <optional>
#include <vector>

#include "platform/foundation/BundleLoader.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/PseudoLanguage.h"
#include "platform/foundation/ResourceWatch.h"
#include "platform/foundation/StringTableCache.h"

namespace platform {

namespace {

struct KnownBundles {
    std::shared_ptr<Bundle> main = std::make_shared<Bundle>("");
    std::string pathForLinkedClasses;
};

KnownBundles& known() {
    static KnownBundles bundles;
    return bundles;
}

std::string withoutTrailingSlashes(std::string path) {
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

Result<Dictionary> readInfo(const std::string& bundlePath) {
    const Result<Data> data = FileManager::defaultManager().contentsAtPath(
        stringByAppendingPathComponent(bundlePath, "Info.plist"));
    if (!data) return std::unexpected(data.error());
    const Result<Value> list = PropertyListSerialization::propertyListWithData(*data);
    if (!list) return std::unexpected(list.error());
    if (const Dictionary* info = list->dictionary()) return *info;
    return failure("Its root is no dictionary.");
}

std::string textIn(const Dictionary& info, std::string_view key) {
    const auto entry = info.find(key);
    return entry == info.end() ? std::string() : entry->second.stringOr();
}

/// The table of one preferred language, looked for from the whole tag down to the bare language.
std::shared_ptr<const StringTable> tableForTag(const std::string& bundlePath, std::string tag,
                                               std::string_view table) {
    for (;;) {
        // The tag comes from the device's settings; it names a folder, and only one of the bundle's.
        if (tag.empty() || tag.find('/') != std::string::npos) return nullptr;
        const std::string folder = stringByAppendingPathComponent(bundlePath, tag + ".lproj");
        const std::string path = stringByAppendingPathComponent(folder, std::string(table) + ".strings");
        if (auto found = StringTableCache::shared().tableAtPath(path)) return found;
        const std::size_t separator = tag.find_last_of("-_");
        if (separator == std::string::npos) return nullptr;
        tag.resize(separator);
    }
}

}  // namespace

std::shared_ptr<Bundle> Bundle::bundleWithPath(std::string_view path) {
    if (!FileManager::defaultManager().directoryExistsAtPath(path)) return nullptr;
    return std::make_shared<Bundle>(withoutTrailingSlashes(std::string(path)));
}

std::shared_ptr<Bundle> Bundle::mainBundle() {
    return known().main;
}

void Bundle::setMainBundlePath(std::string path) {
    known().main = std::make_shared<Bundle>(withoutTrailingSlashes(std::move(path)));
}

std::shared_ptr<Bundle> Bundle::bundleForClass(const Class& cls) {
    std::string path = ClassRegistry::shared().bundlePath(cls);
    if (path.empty()) path = known().pathForLinkedClasses;
    return path.empty() ? mainBundle() : std::make_shared<Bundle>(std::move(path));
}

void Bundle::setBundlePathForLinkedClasses(std::string path) {
    known().pathForLinkedClasses = withoutTrailingSlashes(std::move(path));
}

const Dictionary& Bundle::infoDictionary() const {
    if (!info_) {
        info_ = std::make_unique<const Dictionary>(path_.empty() ? Dictionary()
                                                                 : readInfo(path_).value_or(Dictionary()));
    }
    return *info_;
}

std::string Bundle::pathForResource_ofType(std::string_view name, std::string_view type) const {
    if (path_.empty() || name.empty()) return {};
    std::string file(name);
    if (!type.empty()) file.append(".").append(type);
    std::string path = stringByAppendingPathComponent(path_, file);
    return FileManager::defaultManager().fileExistsAtPath(path) ? path : std::string();
}

std::string Bundle::localizedStringForKey_value_table(std::string_view key, std::string_view value,
                                                      std::string_view table) const {
    auto fallback = std::string(value.empty() ? key : value);
    if (path_.empty()) return fallback;
    if (table.empty()) table = "Localizable";
    if (ResourceWatch* watch = ResourceWatch::current()) watch->textAsked(path_, key, table);
    std::vector<std::string> languages;
    if (const auto& facts = Device::current().facts) languages = facts->preferredLanguages();
    std::string region = textIn(infoDictionary(), "CFBundleDevelopmentRegion");
    if (region.empty()) region = "en";
    languages.push_back(region);

    for (std::string& language : languages) {
        const auto pseudo = pseudoLanguageOfTag(language);
        const auto texts = tableForTag(path_, pseudo ? region : std::move(language), table);
        if (!texts) continue;
        const auto text = texts->find(key);
        // What is not in the table is not localised, and looks so.
        if (text == texts->end()) return fallback;
        return pseudo ? pseudoLocalized(text->second, *pseudo) : text->second;
    }
    return fallback;
}

Result<void> Bundle::load() {
    if (infoDictionary().empty()) {
        const Result<Dictionary> info = readInfo(path_);
        return failure("The bundle \"" + path_ + "\" has no usable Info list: " +
                       (info ? "It is empty." : info.error().localizedDescription));
    }
    return BundleLoader::shared().load(path_, infoDictionary());
}

Result<const Class*> Bundle::principalClass() const {
    const std::string name = textIn(infoDictionary(), "NSPrincipalClass");
    if (name.empty())
        return failure("The bundle \"" + path_ + "\" names no principal class in its Info list.");
    if (const Class* cls = ClassRegistry::shared().find(name)) return cls;
    return failure("The bundle \"" + path_ + "\" names the principal class \"" + name +
                   "\", but there is no class of that name.");
}

}  // namespace platform
