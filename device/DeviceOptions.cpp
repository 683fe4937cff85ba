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

std::string joined(const std::vector<std::string>& pieces) {
    std::string text;
    for (const std::string& piece : pieces) text += (text.empty() ? "" : ",") + piece;
    return text;
}

std::string booleanText(bool value) {
    return value ? "true" : "false";
}

std::string scaleText(const Options& options) {
    std::array<char, 400> text{};
    const auto written =
        std::to_chars(text.data(), text.data() + text.size(), options.scale, std::chars_format::fixed);
    return {text.data(), written.ptr};
}

std::optional<std::string> networksText(const Options& options) {
    using Source = Options::Networks::Source;
    if (options.networks.source == Source::Root) return std::nullopt;
    return options.networks.source == Source::System ? "system" : options.networks.file;
}

enum class About { ThePhone, TheMachine };

/// One row for each key: what its value should be, what stores it, and the value that stands for what is
/// stored, empty where nothing is. False stands for a bad value.
struct Key {
    std::string_view name;
    std::string_view expected;
    bool (*set)(Options&, std::string_view);
    std::optional<std::string> (*text)(const Options&);
    About about = About::ThePhone;
};

using Text = std::optional<std::string>;

constexpr std::array keys{
    Key{"systemVersion", "a dotted version", setSystemVersion,
        [](const Options& o) -> Text { return o.systemVersion; }},
    Key{"idiom", "phone or pad", setIdiom,
        [](const Options& o) -> Text { return o.idiom == Idiom::Pad ? "pad" : "phone"; }},
    Key{"scale", "a number from 0.5 to 10", setScale, [](const Options& o) -> Text { return scaleText(o); }},
    Key{"languages", "comma-separated language tags", setLanguages,
        [](const Options& o) -> Text { return joined(o.languages); }},
    Key{"darkMode", "true or false", [](Options& o, std::string_view v) { return setBoolean(o.darkMode, v); },
        [](const Options& o) -> Text { return booleanText(o.darkMode); }},
    Key{"clock", "system, or a local date and time such as 2026-11-20T09:00:00", setClock,
        [](const Options& o) -> Text { return o.clock ? VirtualClock::text(*o.clock) : "system"; }},
    Key{"statusBarLibrary", "true or false",
        [](Options& o, std::string_view v) { return setBoolean(o.statusBarLibrary, v); },
        [](const Options& o) -> Text { return booleanText(o.statusBarLibrary); }},
    Key{"toneController",
        "none, or some of PSUIToneController, SHSToneController and ToneController, comma-separated",
        setToneController,
        [](const Options& o) -> Text {
            return o.toneController.empty() ? "none" : joined(o.toneController);
        }},
    Key{"mailAccount", "a mail address, or nothing for no account", setMailAccount,
        [](const Options& o) -> Text { return o.mailAccount; }},
    Key{"twitterApp", "true or false",
        [](Options& o, std::string_view v) { return setBoolean(o.twitterApp, v); },
        [](const Options& o) -> Text { return booleanText(o.twitterApp); }},
    Key{"serialNumber", "a text", [](Options& o, std::string_view v) { return setText(o.serialNumber, v); },
        [](const Options& o) { return o.serialNumber; }},
    Key{"UDID", "a text", [](Options& o, std::string_view v) { return setText(o.UDID, v); },
        [](const Options& o) { return o.UDID; }},
    Key{"model", "a text", [](Options& o, std::string_view v) { return setText(o.model, v); },
        [](const Options& o) { return o.model; }},
    Key{"calendars", "a directory that exists",
        [](Options& o, std::string_view v) { return setDirectory(o.calendars, v); },
        [](const Options& o) { return o.calendars; }, About::TheMachine},
    Key{"networks", "system, or a property-list file that exists", setNetworks, networksText,
        About::TheMachine},
    Key{"tones", "system, or a directory that exists", setTones,
        [](const Options& o) -> Text { return o.tones.value_or("system"); }, About::TheMachine},
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

std::vector<std::string> DeviceOptions::pairs() const {
    std::vector<std::string> pairs;
    for (const Key& key : keys) {
        if (const auto text = key.text(*this)) pairs.push_back(std::string(key.name) + "=" + *text);
    }
    return pairs;
}

bool DeviceOptions::isOfTheMachine(std::string_view pair) {
    const auto key = std::ranges::find(keys, pair.substr(0, pair.find('=')), &Key::name);
    return key != keys.end() && key->about == About::TheMachine;
}

std::string DeviceOptions::help() {
    std::string text;
    for (const Key& key : keys) text.append(key.name).append("=: ").append(key.expected).append("\n");
    return text;
}

}  // namespace device
