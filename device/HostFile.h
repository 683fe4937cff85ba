// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <string>

#include "device/Descriptor.h"
#include "platform/foundation/Value.h"

/// File operations on the host's own paths. Their errors are the host's error numbers: the callers know which
/// path to name in a sentence.
namespace device::host {

template <class T>
using Outcome = std::expected<T, int>;

/// The host's text for an error number, "No such file or directory".
std::string message(int errorNumber);

/// The whole of a regular file; anything else (a directory, a pipe) is an error rather than a wait.
Outcome<platform::Data> readFile(const std::string& path);
/// Truncates and writes the file itself, with mode 0644 when it is new.
Outcome<void> overwriteFile(const std::string& path, const platform::Data& data);
/// Writes a temporary file beside the one that the path leads to (through symbolic links, also a dangling
/// one), syncs it, renames it over the old one and syncs the directory. The new file has the old one's mode,
/// or 0644. A failure leaves the old file and no temporary. The temporary of a writer that was killed is
/// reused or removed by the next writer of the same file; a living writer's, which is locked, is left alone.
Outcome<void> replaceFile(const std::string& path, const platform::Data& data);

/// Where a path leads: symbolic links in its last piece followed, as often as they come, also when the last
/// one dangles. Split into the directory and the name within.
struct Location {
    std::string directory;
    std::string name;
};
Outcome<Location> followLinks(std::string path);

/// Takes an exclusive lock on the open file, for other processes and other descriptors of this one, waiting
/// so many seconds of real time at most; ETIMEDOUT when it was not had.
Outcome<void> lock(int descriptor, double seconds);
/// The same for a lock file that is open for writing and that many may want again and again: those who wait
/// get it one after the other. It does not exclude lock()'s holders.
Outcome<void> lockInTurn(int descriptor, double seconds);
/// Whether the name in the directory still is the open file, and not another one that took its place.
bool isSameFile(int directory, const std::string& name, int descriptor);

/// Creates the directory and those above it, with mode 0755.
Outcome<void> createDirectories(const std::string& path);

}  // namespace device::host
