// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace settings::server {

/// The whole content of a regular file of at most `maximumBytes` bytes. Nothing when it cannot be read, is
/// longer, or is something else: a directory, a pipe (which is never waited for), a device.
std::optional<std::string> readRegularFile(const std::string& hostPath, std::size_t maximumBytes);

/// The host path of the file at `relativePath` (as decodePath() gives it) beneath a directory; nothing when
/// it does not exist or when symbolic links lead it out of the directory. Links within the directory are
/// followed.
std::optional<std::string> pathBeneath(const std::string& directory, std::string_view relativePath);

/// The content type for a file's name, by its extension; "application/octet-stream" for one not known.
std::string_view contentTypeOf(std::string_view fileName);

/// A quoted tag that changes with the content, so that a browser fetches a rebuilt file anew and nothing
/// else.
std::string entityTagOf(std::string_view content);

/// Whether the content begins as every PNG file does.
bool isPNG(std::string_view content);

}  // namespace settings::server
