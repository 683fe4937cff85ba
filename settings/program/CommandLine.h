// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <vector>

#include "device/DeviceOptions.h"
#include "settings/program/ProgramPaths.h"

namespace settings {

/// What the program is told to do: each talks the screen protocol over another channel.
enum class Subcommand { Drive, Serve };

/// What the command line asks for, checked.
struct CommandLine {
    Subcommand subcommand = Subcommand::Drive;
    std::string rootDirectory;
    /// A directory that exists.
    std::string bundleDirectory;
    device::DeviceOptions device;
    /// For Subcommand::Serve; 0 for any free one.
    std::uint16_t port = 0;
    /// For Subcommand::Serve: whether pages that are still open from an earlier start are shut out.
    bool newSecret = false;
};

/// Why the program ends before it has begun: help and version are printed with status 0, an error is one line
/// for standard error with status 2.
struct EarlyEnd {
    int status = 0;
    std::string text;
};

/// `arguments` without the program's own name.
std::expected<CommandLine, EarlyEnd> parseCommandLine(std::vector<std::string> arguments,
                                                      const ProgramPaths& paths);

}  // namespace settings
