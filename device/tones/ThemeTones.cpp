// SPDX-License-Identifier: MIT
#include "device/tones/ThemeTones.h"

#include <algorithm>
#include <set>
#include <utility>

#include "device/EscapedText.h"
#include "device/FileHead.h"
#include "device/tones/BuiltInTones.h"
#include "device/tones/ToneNames.h"
#include "platform/foundation/Bundle.h"

namespace device {

namespace {

using platform::Result;
using platform::ToneEntry;
using platform::ToneSound;

constexpr std::string_view kind = "texttone:";

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
}

std::string mediaTypeOf(const std::filesystem::path& file) {
    return lowerCase(file.extension().native()) == ".wav" ? "audio/wav" : "audio/ogg";
}

/// Calls the tone that every phone has by its name in the phone's language: a profile's row does so too.
void localizeCalendarAlert(ToneNames& names) {
    auto alert = names.extract(std::string(calendarAlertTone));
    alert.key() =
        platform::Bundle::mainBundle()->localizedStringForKey_value_table(calendarAlertTone, {}, {});
    while (names.contains(alert.key())) alert.key().append(" (").append(calendarAlertTone).append(")");
    names.insert(std::move(alert));
}

}  // namespace

ThemeTones::ThemeTones(SoundThemes themes) : themes_(std::move(themes)) {}

bool ThemeTones::has(std::string_view identifier, const SoundThemes::Sounds& sounds) {
    if (!identifier.starts_with(kind)) return false;
    const std::string_view name = identifier.substr(kind.size());
    const std::vector<std::string> own = builtInToneNames();
    return std::ranges::find(own, name) != own.end() ||
           std::ranges::any_of(sounds, [&](const auto& sound) { return escapedText(sound.first) == name; });
}

std::map<std::string, std::filesystem::path, std::less<>> ThemeTones::files() {
    std::map<std::string, std::filesystem::path, std::less<>> files;
    for (const auto& [sound, file] : themes_.sounds()) files.emplace(escapedText(sound), file);
    return files;
}

std::vector<ToneEntry> ThemeTones::tones() {
    const SoundThemes::Sounds sounds = themes_.sounds();
    std::set<std::string> offered{std::string(calendarAlertTone)};
    for (const auto& [sound, file] : sounds) offered.insert(sound);
    if (sounds.empty()) {
        const std::vector<std::string> own = builtInToneNames();
        offered.insert(own.begin(), own.end());
    }
    ToneNames named = toneNames({offered.begin(), offered.end()});
    localizeCalendarAlert(named);
    std::vector<ToneEntry> entries;
    entries.reserve(named.size());
    for (const auto& [name, sound] : named) entries.push_back({std::string(kind) + escapedText(sound), name});
    std::ranges::sort(entries, {},
                      [](const ToneEntry& entry) { return std::pair(lowerCase(entry.name), entry.name); });
    return entries;
}

Result<ToneSound> ThemeTones::sound(std::string_view identifier) {
    const std::string quoted = "The tone " + quotedText(identifier);
    if (!identifier.starts_with(kind))
        return platform::failure(quoted + " is of no kind that is known here.");
    const std::string_view name = identifier.substr(kind.size());
    const auto sounds = files();
    const auto found = sounds.find(name);
    if (found == sounds.end()) {
        auto wave = builtInTone(name);
        if (!wave) return platform::failure(quoted + " does not exist.");
        return ToneSound{"audio/wav", *std::move(wave)};
    }
    const auto head = host::readHead(found->second.native(), maximumBytes);
    if (!head) return platform::failure(quoted + " could not be read: " + host::message(head.error()) + ".");
    if (!head->whole) return platform::failure(quoted + " is larger than 8 MiB.");
    return ToneSound{mediaTypeOf(found->second), platform::Data(head->bytes.begin(), head->bytes.end())};
}

}  // namespace device
