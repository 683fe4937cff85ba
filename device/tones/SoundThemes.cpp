// SPDX-License-Identifier: MIT
#include "device/tones/SoundThemes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <iterator>
#include <system_error>
#include <utility>

#include "device/EscapedText.h"
#include "device/FileHead.h"

namespace device {

namespace fs = std::filesystem;

struct SoundThemes::Search {
    Sounds decided;
    std::set<std::string> seenThemes;
    std::vector<Fault> faults;

    void report(std::string sentence, std::string state = {}) {
        faults.push_back({std::move(sentence), std::move(state)});
    }
};

namespace {

constexpr std::string_view indexFile = "index.theme";
/// Every theme inherits from it.
constexpr const char* lastTheme = "freedesktop";
/// Stands for a directory that is a theme itself; no folder can be called so.
constexpr const char* theDirectoryItself = ".";
/// What decides about a name, the first of them if there are several.
constexpr std::array<std::string_view, 4> extensions{".disabled", ".oga", ".ogg", ".wav"};

std::string environment(const char* name, const std::string& fallback) {
    const char* value = std::getenv(name);
    return value && *value ? value : fallback;
}

std::size_t rankOf(const fs::path& file) {
    std::string extension = file.extension().native();
    std::ranges::transform(extension, extension.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return static_cast<std::size_t>(std::ranges::find(extensions, extension) - extensions.begin());
}

constexpr std::size_t disabled = 0;

bool isMissing(const std::error_code& error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

}  // namespace

SoundThemes::SoundThemes(std::vector<fs::path> directories) : directories_(std::move(directories)) {}

std::vector<fs::path> SoundThemes::systemDirectories() {
    std::vector<fs::path> directories;
    const std::string home = environment("HOME", "");
    std::string list = environment("XDG_DATA_HOME", home.empty() ? "" : home + "/.local/share") + ":" +
                       environment("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    while (!list.empty()) {
        const std::string piece = list.substr(0, list.find(':'));
        list.erase(0, piece.size() + 1);
        // A relative one is to be ignored: it would mean another place in each working directory.
        if (piece.starts_with('/')) directories.push_back(fs::path(piece) / "sounds");
    }
    return directories;
}

SoundThemes::Sounds SoundThemes::sounds() {
    Found found = look();
    for (const Fault& fault : found.faults) faults_.report(fault.sentence, fault.state);
    faults_.endQuestion();
    return std::move(found.sounds);
}

SoundThemes::Found SoundThemes::look() const {
    Search search;
    for (const std::string& theme : themeNames(search)) {
        const auto found = index(theme, search);
        if (found && !found->hidden && theme != lastTheme) addTheme(theme, search);
    }
    addTheme(lastTheme, search);
    for (const fs::path& directory : directories_) addFolder(directory, search);

    std::erase_if(search.decided, [](const auto& sound) { return sound.second.empty(); });
    if (search.decided.size() > maximumSounds) {
        search.report("Of " + std::to_string(search.decided.size()) + " sounds only the first " +
                      std::to_string(maximumSounds) + " are offered.");
        search.decided.erase(std::next(search.decided.begin(), maximumSounds), search.decided.end());
    }
    // A theme that others inherit from is looked at more than once.
    std::vector<Fault> faults;
    for (Fault& fault : search.faults) {
        if (std::ranges::find(faults, fault.sentence, &Fault::sentence) == faults.end())
            faults.push_back(std::move(fault));
    }
    return {std::move(search.decided), std::move(faults)};
}

fs::path SoundThemes::themeFolder(const fs::path& directory, const std::string& theme) const {
    return theme == theDirectoryItself ? directory : directory / theme;
}

std::set<std::string> SoundThemes::themeNames(Search& search) const {
    std::set<std::string> names{theDirectoryItself};
    for (const fs::path& directory : directories_) {
        std::error_code error;
        for (fs::directory_iterator entry(directory, error); !error && entry != fs::directory_iterator();
             entry.increment(error)) {
            std::error_code ignored;
            const std::string name = entry->path().filename().native();
            if (!name.starts_with('.') && entry->is_directory(ignored)) names.insert(name);
        }
        if (error && !isMissing(error))
            search.report("The sounds in " + quotedText(directory.native()) +
                          " could not be listed: " + error.message() + ".");
    }
    return names;
}

/// Of the first directory in which the theme has one; empty when it has none, or a broken one.
std::optional<SoundThemeIndex> SoundThemes::index(const std::string& theme, Search& search) const {
    for (const fs::path& directory : directories_) {
        const fs::path file = themeFolder(directory, theme) / indexFile;
        const auto head = host::readHead(file.native(), SoundThemeIndex::maximumSize);
        if (!head && (head.error() == ENOENT || head.error() == ENOTDIR)) continue;
        if (!head) {
            search.report("The file " + quotedText(file.native()) +
                          " could not be read: " + host::message(head.error()) + ".");
            return std::nullopt;
        }
        auto index = head->whole ? SoundThemeIndex::parse(head->bytes) : platform::failure("is too large");
        if (!index) {
            search.report(
                "The file " + quotedText(file.native()) + " " + index.error().localizedDescription + ".",
                head->state);
            return std::nullopt;
        }
        return std::move(*index);
    }
    return std::nullopt;
}

/// The theme, then those it inherits from, each of them once: they may inherit from each other.
void SoundThemes::addTheme(const std::string& theme, Search& search) const {
    std::vector<std::string> waiting{theme};
    while (!waiting.empty()) {
        const std::string next = std::move(waiting.back());
        waiting.pop_back();
        // All others come before the last one, whoever inherits from it.
        if ((next == lastTheme && theme != lastTheme) || !search.seenThemes.insert(next).second) continue;
        const auto found = index(next, search);
        if (!found) continue;
        for (const std::string& folder : found->directories) {
            for (const fs::path& directory : directories_)
                addFolder(themeFolder(directory, next) / folder, search);
        }
        waiting.insert(waiting.end(), found->inherits.rbegin(), found->inherits.rend());
    }
}

void SoundThemes::addFolder(const fs::path& folder, Search& search) const {
    std::map<std::string, fs::path> found;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const fs::path& file = entry->path();
        std::error_code ignored;
        const std::string name = file.stem().native();
        const std::size_t rank = rankOf(file);
        if (name.starts_with('.') || rank == extensions.size()) continue;
        if (rank != disabled && !entry->is_regular_file(ignored)) continue;
        const auto [known, isNew] = found.emplace(name, file);
        if (!isNew && rank < rankOf(known->second)) known->second = file;
    }
    if (error && !isMissing(error))
        search.report("The sounds in " + quotedText(folder.native()) +
                      " could not be listed: " + error.message() + ".");
    for (const auto& [name, file] : found)
        search.decided.emplace(name, rankOf(file) == disabled ? fs::path() : file);
}

}  // namespace device
