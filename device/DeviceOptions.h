// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace device {

enum class Idiom { Phone = 0, Pad = 1 };

/// How the phone is equipped, as given by `--device KEY=VALUE` pairs. Each member is the key of its name.
struct DeviceOptions {
    /// Where the known networks and the one that is joined come from.
    struct Networks {
        enum class Source { Root, System, File };
        Source source = Source::Root;
        /// A host path, for Source::File.
        std::string file;
    };

    std::string systemVersion = "11.4";
    Idiom idiom = Idiom::Phone;
    double scale = 2.0;
    std::vector<std::string> languages{"en"};
    bool darkMode = false;
    /// Where a virtual clock starts; empty: the machine's time.
    std::optional<platform::Date> clock;
    bool statusBarLibrary = true;
    /// The tone-screen classes that exist; empty for none.
    std::vector<std::string> toneController{"PSUIToneController"};
    /// "" for no account.
    std::string mailAccount;
    bool twitterApp = false;
    /// Empty: made up once for the root.
    std::optional<std::string> serialNumber;
    std::optional<std::string> UDID;
    std::optional<std::string> model;
    /// A host directory; empty: the root's own.
    std::optional<std::string> calendars;
    Networks networks;
    /// A host directory; empty: the machine's sound themes.
    std::optional<std::string> tones;

    /// Later pairs win over earlier ones. The error names the key and what its value should be.
    static platform::Result<DeviceOptions> parse(std::span<const std::string> pairs);
    /// The same with these pairs changed.
    platform::Result<DeviceOptions> with(std::span<const std::string> pairs) const;
    /// A pair for each key that is set, which together give the same again.
    std::vector<std::string> pairs() const;
    /// Whether a pair's value is a place on this machine, or the machine itself.
    static bool isOfTheMachine(std::string_view pair);
    /// A line for each key with its values, for a program's help.
    static std::string help();
};

}  // namespace device
