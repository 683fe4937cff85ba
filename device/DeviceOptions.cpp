// SPDX-License-Identifier: MIT
#include "device/DeviceOptions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <string_view>

#include "device/MailAddress.h"
#include "device/VirtualClock.h"

namespace device {

namespace {

using Options = DeviceOptions;

bool isLetterOrDigit(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    for (;;) {
        const std::size_t end = text.find(separator);
        pieces.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) return pieces;
        text.remove_prefix(end + 1);
    }
}

bool setBoolean(bool& member, std::string_view value) {
    member = value == "true";
    return member || value == "false";
}

bool setText(std::optional<std::string>& member, std::string_view value) {
    member = value;
    return !value.empty();
}

bool setDirectory(std::optional<std::string>& member, std::string_view value) {
    std::error_code error;
    member = value;
    return std::filesystem::is_directory(*member, error);
}

bool setSystemVersion(Options& options, std::string_view value) {
    options.systemVersion = value;
    return std::ranges::all_of(split(value, '.'), [](const std::string& piece) {
        return !piece.empty() && piece.size() <= 9 && std::ranges::all_of(piece, isDigit);
    });
}

bool setIdiom(Options& options, std::string_view value) {
    options.idiom = value == "pad" ? Idiom::Pad : Idiom::Phone;
    return value == "pad" || value == "phone";
}

bool setScale(Options& options, std::string_view value) {
    const char* end = value.data() + value.size();
    const auto [stopped, error] = std::from_chars(value.data(), end, options.scale, std::chars_format::fixed);
    return error == std::errc() && stopped == end && options.scale >= 0.5 && options.scale <= 10;
}

bool setLanguages(Options& options, std::string_view value) {
    options.languages = split(value, ',');
    return std::ranges::all_of(options.languages, [](const std::string& tag) {
        return std::ranges::all_of(split(tag, '-'), [](const std::string& piece) {
            return !piece.empty() && piece.size() <= 8 && std::ranges::all_of(piece, isLetterOrDigit);
        });
    });
}

bool setClock(Options& options, std::string_view value) {
    options.clock.reset();
    if (value == "system") return true;
    const auto start = VirtualClock::parse(value);
    if (!start) return false;
    options.clock = *start;
    return true;
}

bool setToneController(Options& options, std::string_view value) {
    constexpr std::array<std::string_view, 3> known{"PSUIToneController", "SHSToneController",
                                                    "ToneController"};
    options.toneController.clear();
    if (value == "none") return true;
    options.toneController = split(value, ',');
    return std::ranges::all_of(options.toneController, [&](const std::string& name) {
        return std::ranges::find(known, name) != known.end();
    });
}

bool setMailAccount(Options& options, std::string_view value) {
    options.mailAccount = value;
    // None: a phone without an account.
    return value.empty() || isMailAddress(value);
}

bool setNetworks(Options& options, std::string_view value) {
    std::error_code error;
    options.networks = {Options::Networks::Source::System, {}};
    if (value == "system") return true;
    options.networks = {Options::Networks::Source::File, std::string(value)};
    return std::filesystem::is_regular_file(options.networks.file, error);
}

bool setTones(Options& options, std::string_view value) {
    options.tones.reset();
    return value == "system" || setDirectory(options.tones, value);
}

/// One row for each key: what its value should be, and what stores it. False stands for a bad value.
struct Key {
    std::string_view name;
    std::string_view expected;
    bool (*set)(Options&, std::string_view);
};

constexpr std::array keys{
    Key{"systemVersion", "a dotted version", setSystemVersion},
    Key{"idiom", "phone or pad", setIdiom},
    Key{"scale", "a number from 0.5 to 10", setScale},
    Key{"languages", "comma-separated language tags", setLanguages},
    Key{"darkMode", "true or false",
        [](Options& o, std::string_view v) { return setBoolean(o.darkMode, v); }},
    Key{"clock", "system, or a local date and time such as 2026-11-20T09:00:00", setClock},
    Key{"statusBarLibrary", "true or false",
        [](Options& o, std::string_view v) { return setBoolean(o.statusBarLibrary, v); }},
    Key{"toneController",
        "none, or some of PSUIToneController, SHSToneController and ToneController, comma-separated",
        setToneController},
    Key{"mailAccount", "a mail address, or nothing for no account", setMailAccount},
    Key{"twitterApp", "true or false",
        [](Options& o, std::string_view v) { return setBoolean(o.twitterApp, v); }},
    Key{"serialNumber", "a text", [](Options& o, std::string_view v) { return setText(o.serialNumber, v); }},
    Key{"UDID", "a text", [](Options& o, std::string_view v) { return setText(o.UDID, v); }},
    Key{"model", "a text", [](Options& o, std::string_view v) { return setText(o.model, v); }},
    Key{"calendars", "a directory that exists",
        [](Options& o, std::string_view v) { return setDirectory(o.calendars, v); }},
    Key{"networks", "system, or a property-list file that exists", setNetworks},
    Key{"tones", "system, or a directory that exists", setTones},
};

}  // namespace

platform::Result<DeviceOptions> DeviceOptions::parse(std::span<const std::string> pairs) {
    return DeviceOptions().with(pairs);
}

platform::Result<DeviceOptions> DeviceOptions::with(std::span<const std::string> pairs) const {
    DeviceOptions options = *this;
    for (const std::string& pair : pairs) {
        const std::size_t equals = pair.find('=');
        if (equals == std::string::npos) {
            return platform::failure("The device option \"" + pair + "\" is not of the form KEY=VALUE.");
        }
        const std::string name = pair.substr(0, equals);
        const std::string value = pair.substr(equals + 1);
        const auto key = std::ranges::find(keys, name, &Key::name);
        if (key == keys.end()) return platform::failure("There is no device option \"" + name + "\".");
        if (!key->set(options, value)) {
            return platform::failure("The device option \"" + name + "\" cannot be \"" + value +
                                     "\": it takes " + std::string(key->expected) + ".");
        }
    }
    return options;
}

std::string DeviceOptions::help() {
    std::string text;
    for (const Key& key : keys) text.append(key.name).append("=: ").append(key.expected).append("\n");
    return text;
}

}  // namespace device
