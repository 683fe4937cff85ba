// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace settings {

/// What tells one version of a file from the next.
struct HostStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t bytes = 0;
    std::int64_t changedSeconds = 0;
    std::int64_t changedNanoseconds = 0;

    bool operator==(const HostStamp&) const = default;
};

/// By host path; a file that is not there has none.
using HostStamps = std::map<std::string, HostStamp>;

/// The stamps of the files at these paths, and of all files below those that are directories.
HostStamps stampsOf(const std::vector<std::string>& paths);

}  // namespace settings
