// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "device/HostFile.h"

/// Files that are written in place: they stay the files they are, and are never empty or cut meanwhile.
namespace device::host {

/// Writes the bytes over those of the file itself, in one piece, then cuts it to their length and syncs it.
/// Writers have the file's lock in turn, for two seconds of waiting at most, which the caller must not hold.
/// A file that is not there is made whole, as replaceFile() does. A host path.
///
/// A program that knows nothing of the lock and reads meanwhile sees the old bytes or the new ones; where
/// they are of different lengths, for an instant the new ones with the old file's end.
Explained<void> writeInPlace(const std::string& path, const platform::Data& data);

/// The whole of a regular file: the old bytes or the new ones of one that is being written in place. Waits
/// for a writer a quarter of a second at most; one that was stopped in that very instant is read as it is.
Outcome<platform::Data> readInPlace(const std::string& path);

}  // namespace device::host
