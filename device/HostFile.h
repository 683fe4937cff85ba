// SPDX-License-Identifier: MIT
#pragma once

#include <sys/stat.h>

#include <expected>
#include <span>
#include <string>

#include "device/Descriptor.h"
#include "platform/foundation/Value.h"

/// File operations on the host's own paths. The callers know which of the phone's paths to name in a
/// sentence, so an error here is only what they cannot know.
namespace device::host {

/// The error is the host's error number.
template <class T>
using Outcome = std::expected<T, int>;
/// The error is the end of a sentence, without the full stop: the host's text for an error number, or what is
/// wrong with another file than the caller's, which it names.
template <class T>
using Explained = std::expected<T, std::string>;

/// What is made new is for its owner only, and for nobody whom the umask keeps out.
constexpr mode_t newFileMode = 0600;
constexpr mode_t newDirectoryMode = 0700;

/// The host's text for an error number, "No such file or directory".
std::string message(int errorNumber);

/// The status of an open file that can be read and written whole; anything else (a directory, a pipe) is an
/// error rather than a wait.
Outcome<struct stat> regularFile(int descriptor);
/// The whole of a regular file.
Outcome<platform::Data> readFile(const std::string& path);
/// The same of an open one, from where it is.
Outcome<platform::Data> readFile(const Descriptor& file);
enum class Sync { No, Yes };
/// Makes a file that is not there yet; EEXIST when the name is taken. A failure leaves none.
Outcome<void> createFile(const std::string& path, const platform::Data& data, Sync sync);
/// Writes all the bytes to an open file.
Outcome<void> writeAll(int descriptor, std::span<const std::uint8_t> bytes);

/// Where a path leads: symbolic links in its last piece followed, as often as they come, also when the last
/// one dangles. Split into the directory, which ends with a slash, and the name within.
struct Location {
    std::string directory;
    std::string name;
};
Outcome<Location> followLinks(std::string path);

/// Whether the name in the directory still is the open file, and not another one that took its place.
bool isSameFile(int directory, const std::string& name, int descriptor);

/// Creates the directory and those above it.
Outcome<void> createDirectories(const std::string& path);

}  // namespace device::host
