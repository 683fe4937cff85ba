// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <vector>

#include "device/DeviceOptions.h"
#include "settings/program/ProgramPaths.h"

namespace settings {

/// The ways in which the program talks the screen protocol.
enum class Channel { Drive, Serve };

/// What the command line asks for, checked.
struct CommandLine {
    Channel channel = Channel::Drive;
    std::string rootDirectory;
    /// A directory that exists.
    std::string bundleDirectory;
    device::DeviceOptions device;
    /// For Channel::Serve; 0 for any free one.
    std::uint16_t port = 0;
    /// For Channel::Serve: whether pages that are still open from an earlier start are shut out.
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
