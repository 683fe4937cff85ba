// SPDX-License-Identifier: MIT
#include "settings/recording/RecordingImages.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace settings {

namespace fs = std::filesystem;

namespace {

/// How far the scale of an image is from the screen's: a smaller one is worse than any larger.
double distance(double scale, double screen) {
    constexpr double tooSmall = 100;
    return scale < screen ? tooSmall + screen - scale : scale - screen;
}

/// A file's name without its scale, "nav" of "nav@2x", and that scale.
std::pair<std::string, double> resourceOf(const std::string& stem) {
    constexpr std::size_t length = 3;
    if (stem.size() > length && stem.back() == 'x' && stem[stem.size() - length] == '@') {
        const char digit = stem[stem.size() - 2];
        if (digit >= '1' && digit <= '9') return {stem.substr(0, stem.size() - length), digit - '0'};
    }
    return {stem, 1};
}

}  // namespace

RecordingImages::RecordingImages(const std::vector<std::string>& directories, double scale) {
    for (const std::string& directory : directories) add(directory, scale);
}

std::optional<std::string> RecordingImages::file(std::string_view name) const {
    const auto found = files_.find(name);
    if (found == files_.end()) return std::nullopt;
    return found->second;
}

void RecordingImages::add(const std::string& directory, double scale) {
    std::map<std::string, std::pair<double, std::string>> resources;
    std::map<std::string, std::string> byFile;
    std::error_code error;
    fs::recursive_directory_iterator entries(directory, fs::directory_options::skip_permission_denied, error);
    for (; !error && entries != fs::recursive_directory_iterator(); entries.increment(error)) {
        if (entries->path().extension() != ".png") continue;
        const std::string stem = entries->path().stem().string();
        const auto [name, own] = resourceOf(stem);
        byFile.emplace(stem, entries->path().string());
        const auto known = resources.find(name);
        if (known == resources.end() || distance(own, scale) < known->second.first)
            resources[name] = {distance(own, scale), entries->path().string()};
    }
    // "nav" is the image at the phone's scale and not the file without one.
    for (auto& [name, found] : resources) files_.emplace(name, std::move(found.second));
    files_.merge(byFile);
}

}  // namespace settings
