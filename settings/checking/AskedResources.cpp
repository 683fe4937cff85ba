// SPDX-License-Identifier: MIT
#include "settings/checking/AskedResources.h"

#include "platform/foundation/PseudoLanguage.h"
#include "platform/foundation/StringTableCache.h"

namespace settings {

void AskedResources::textAsked(const std::string& bundlePath, std::string_view key, std::string_view table) {
    if (bundlePath == bundlePath_ && !key.empty()) asked_.texts.emplace(key, table);
}

void AskedResources::imageAsked(const std::string& bundlePath, std::string_view name) {
    if (bundlePath == bundlePath_) asked_.images.emplace(name);
}

bool AskedResources::hasText(const std::string& language, const std::string& key,
                             const std::string& table) const {
    // It has what the development region has, which is looked at for itself.
    if (platform::pseudoLanguageOfTag(language)) return true;
    std::string tag = language;
    for (;;) {
        const std::string path = bundlePath_ + "/" + tag + ".lproj/" + table + ".strings";
        if (const auto texts = platform::StringTableCache::shared().tableAtPath(path))
            return texts->contains(key);
        const std::size_t separator = tag.find_last_of("-_");
        if (separator == std::string::npos) return false;
        tag.resize(separator);
    }
}

}  // namespace settings
