// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <string>

#include "device/HostFile.h"
#include "platform/foundation/FileSystem.h"

namespace device {

/// A folder that nobody but its owner can put anything into: what is found there is this user's.
struct OwnFolder {
    /// None where the folder is missing and was to be left so.
    Descriptor directory;
    std::string path;
    uid_t owner = 0;
    mode_t mode = 0;

    /// Opens the folder of that name in the directory `parent`, which ends with a slash; made new, it is for
    /// its owner only. It has to belong to this user, or to the one who owns the directory and could do
    /// anything there. One of somebody else's, a link, or what is no folder is refused, by its path.
    static host::Explained<OwnFolder> open(const std::string& parent, std::string_view name,
                                           platform::Missing missing);
    /// Gives it these rights.
    host::Explained<void> setMode(mode_t newMode);
};

/// «"PATH": REASON», and that it belongs to that user, as the ends of sentences.
std::unexpected<std::string> aboutPath(const std::string& path, const std::string& reason);
std::unexpected<std::string> belongsToAnother(const std::string& path, uid_t owner);

}  // namespace device
