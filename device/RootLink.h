// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "device/PrivateLock.h"
#include "platform/foundation/Error.h"

namespace device {

/// The lock of those who make a root ready, one after the other; another process needs far less than what is
/// waited for it. A host path, of a directory that is there.
platform::Result<PrivateLock> lockRoot(const std::string& rootDirectory);

/// Makes the phone's path a link to the host's directory, in one step as others see it, with the directories
/// above it; an older link is replaced. Nothing is locked or written where it is that link already. The error
/// is one sentence for the user.
platform::Result<void> linkDirectory(const std::string& rootDirectory, std::string_view path,
                                     const std::filesystem::path& target);

}  // namespace device
