// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "device/HostFile.h"

namespace device::host {

/// The beginning of a file.
struct FileHead {
    std::string bytes;
    /// Whether the bytes are the whole file.
    bool whole = false;
    /// Differs whenever the file has changed.
    std::string state;
};

/// Reads so many bytes at most of a regular file; anything else (a directory, a pipe) is an error rather than
/// a wait. A host path.
Outcome<FileHead> readHead(const std::string& path, std::size_t limit);

}  // namespace device::host
