// SPDX-License-Identifier: MIT
#include "settings/checking/BundleFiles.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string_view>

#include "platform/foundation/FileManager.h"
#include "platform/foundation/StringTableCache.h"

namespace settings {

using platform::Bundle;
using platform::FileManager;
using platform::StringTable;

namespace {

std::string developmentRegion(const Bundle& bundle) {
    const auto region = bundle.infoDictionary().find("CFBundleDevelopmentRegion");
    return region == bundle.infoDictionary().end() ? "en" : region->second.stringOr("en");
}

std::vector<std::string> namesIn(const std::string& directory, std::string_view extension) {
    auto names = FileManager::defaultManager().contentsOfDirectoryAtPath(directory);
    if (!names) return {};
    std::erase_if(*names, [&](const std::string& name) { return !name.ends_with(extension); });
    return *std::move(names);
}

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

/// In their order; "%%" is none.
std::vector<std::string> placeholdersOf(std::string_view text) {
    constexpr std::string_view conversions = "@dDiuUxXoOfFeEgGcCsSpaA";
    std::vector<std::string> found;
    bool isNumbered = false;
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != '%') continue;
        std::size_t end = i + 1;
        if (text[end] == '%') {
            i = end;
            continue;
        }
        while (end < text.size() && (isDigit(text[end]) || std::string_view("$.+-#lhqz").contains(text[end])))
            ++end;
        if (end == text.size() || !conversions.contains(text[end])) continue;
        found.emplace_back(text.substr(i, end + 1 - i));
        isNumbered = isNumbered || found.back().contains('$');
        i = end;
    }
    if (isNumbered) std::ranges::sort(found);
    return found;
}

std::string listed(const std::vector<std::string>& texts) {
    std::string list;
    for (const std::string& text : texts) list += (list.empty() ? "" : ", ") + text;
    return list.empty() ? "none" : list;
}

/// The image's name, and the scale of this file of it.
std::pair<std::string, int> imageOfFile(std::string name) {
    name.resize(name.size() - std::string_view(".png").size());
    for (const int scale : {2, 3}) {
        const std::string suffix = "@" + std::to_string(scale) + "x";
        if (name.ends_with(suffix)) return {name.substr(0, name.size() - suffix.size()), scale};
    }
    return {name, 1};
}

}  // namespace

std::vector<std::string> languagesOfBundle(const Bundle& bundle) {
    std::vector<std::string> languages;
    const auto entry = bundle.infoDictionary().find("CFBundleLocalizations");
    if (entry != bundle.infoDictionary().end() && entry->second.array()) {
        for (const auto& language : *entry->second.array()) {
            if (language.string()) languages.push_back(*language.string());
        }
    }
    if (languages.empty()) languages.push_back(developmentRegion(bundle));
    return languages;
}

void checkPlaceholders(const Bundle& bundle, Findings& findings) {
    const std::string region = developmentRegion(bundle);
    const std::string own = bundle.bundlePath() + "/" + region + ".lproj";
    for (const std::string& table : namesIn(own, ".strings")) {
        const auto texts = platform::StringTableCache::shared().tableAtPath(own + "/" + table);
        if (!texts) continue;
        for (const std::string& language : languagesOfBundle(bundle)) {
            const std::string path = bundle.bundlePath() + "/" + language + ".lproj/" + table;
            const auto others = platform::StringTableCache::shared().tableAtPath(path);
            if (!others || language == region) continue;
            for (const auto& [key, text] : *texts) {
                const auto other = others->find(key);
                if (other == others->end()) continue;
                const auto expected = placeholdersOf(text);
                const auto found = placeholdersOf(other->second);
                if (expected == found) continue;
                findings.add({.kind = FindingKind::DifferentPlaceholders,
                              .screen = "",
                              .row = "",
                              .subject = key,
                              .text = "The text \"" + key + "\" has the placeholders " + listed(expected) +
                                      " in " + region + " and " + listed(found) + " in " + language + "."},
                             language);
            }
        }
    }
}

std::vector<int> missingScales(const Bundle& bundle, const std::string& image) {
    std::vector<int> missing;
    for (const int scale : {1, 2, 3}) {
        const std::string name = scale == 1 ? image : image + "@" + std::to_string(scale) + "x";
        if (bundle.pathForResource_ofType(name, "png").empty()) missing.push_back(scale);
    }
    return missing;
}

void checkImages(const Bundle& bundle, Findings& findings) {
    std::set<std::string> images;
    for (const std::string& name : namesIn(bundle.bundlePath(), ".png"))
        images.insert(imageOfFile(name).first);
    for (const std::string& image : images) {
        for (const int scale : missingScales(bundle, image)) {
            const std::string at = std::to_string(scale);
            findings.add({.kind = FindingKind::MissingImage,
                          .screen = "",
                          .row = "",
                          .subject = image + (scale == 1 ? "" : "@" + at + "x"),
                          .text = "The image \"" + image + "\" is missing at scale " + at + "."},
                         "");
        }
    }
}

}  // namespace settings
