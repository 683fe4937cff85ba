// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "device/HostFile.h"

namespace device::host {

/// Writes a temporary file beside the one that the path leads to (through symbolic links, also a dangling
/// one), syncs it, renames it over the old one and syncs the directory. The new file has the old one's mode,
/// or that of a new file. A failure leaves the old file and no temporary. The temporary of a writer that was
/// killed is removed by the next writer of the same file; a living writer's, which is locked, is left alone,
/// as is one that is somebody else's. A host path.
Explained<void> replaceFile(const std::string& path, const platform::Data& data);

}  // namespace device::host
