// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "device/DeviceOptions.h"
#include "device/ProgramPaths.h"

namespace settings {

/// What the program is told to do: to talk the screen protocol over a channel, to show the page of a server
/// that does, to replay or show what was said, to look for a bundle's mistakes, or to use it at random.
enum class Subcommand { Drive, Serve, Open, Record, Replay, View, Check, Explore };

/// For Subcommand::Check. Empty texts for what was not asked for.
struct CheckArguments {
    bool json = false;
    bool timings = false;
    /// Host paths.
    std::string junit;
    std::string accepted;
};

/// For Subcommand::Serve.
struct WatchArguments {
    /// Whether the program is started anew when what it is made of has changed.
    bool isOn = false;
    /// What builds it, for the shell; "" for nothing.
    std::string build;
    /// Host paths of directories; empty for the present one.
    std::vector<std::string> sources;
    /// Whether this is the program that a watcher has started.
    bool isWatched = false;
};

/// For Subcommand::Explore.
struct ExploreArguments {
    std::uint64_t steps = 10'000;
    /// Without one, each exploration is another.
    std::optional<std::uint32_t> seed;
    bool json = false;
    /// In seconds.
    unsigned patience = 20;
    /// Host paths; empty for what was not asked for.
    std::string out;
    std::string trace;
};

/// What the command line asks for, checked.
struct CommandLine {
    Subcommand subcommand = Subcommand::Drive;
    /// Empty for Subcommand::Replay, which has a root of its own, for Subcommand::View, which has none, and
    /// for Subcommand::Check and Subcommand::Explore when no data was named.
    std::string rootDirectory;
    /// A directory that exists. Empty for Subcommand::View when none was named.
    std::string bundleDirectory;
    device::DeviceOptions device;
    /// For Subcommand::Serve; 0 for any free one.
    std::uint16_t port = 0;
    /// For Subcommand::Serve: whether pages that are still open from an earlier start are shut out.
    bool newSecret = false;
    /// For Subcommand::Serve: how long nobody may have a page open before it ends; nothing for no end.
    std::optional<std::chrono::milliseconds> patience;
    /// For Subcommand::Open: how long others are waited for.
    std::chrono::seconds openPatience{60};
    WatchArguments watch;
    /// For Subcommand::Record, Subcommand::Replay and Subcommand::View: the file.
    std::string recording;
    /// For Subcommand::Replay: whether different answers take the place of the recorded ones.
    bool update = false;
    CheckArguments check;
    ExploreArguments explore;
};

/// Why the program ends before it has begun: help and version are printed with status 0, an error is one line
/// for standard error with status 2.
struct EarlyEnd {
    int status = 0;
    std::string text;
};

/// `arguments` without the program's own name.
std::expected<CommandLine, EarlyEnd> parseCommandLine(std::vector<std::string> arguments,
                                                      const device::ProgramPaths& paths);

}  // namespace settings
