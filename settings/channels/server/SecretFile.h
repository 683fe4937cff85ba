// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "platform/foundation/Error.h"

namespace settings::server {

/// Whose secret outlives the program, and where. Host paths.
struct SecretPlace {
    /// The user's own directory for as long as they are logged in: what $XDG_RUNTIME_DIR names. Empty: there
    /// is none.
    std::string runtimeDirectory;
    /// An existing directory. However it is written, the same one has the same secret.
    std::string rootDirectory;
    std::uint16_t port = 0;
};

/// Whether a start takes over the secret that the one before has left.
enum class OldSecret { TakeOver, Forget };

/// The secret for a program on that root and port: the one that is kept in a file for them, else a new one,
/// which is kept from now on. The file is its owner's only, in a folder that is the owner's only; where that
/// cannot be had the secret is a new one and is not kept, which is one line in the log. Without a runtime
/// directory nothing is said. Fails only when no secret can be made at all.
platform::Result<std::string> keptSecret(const SecretPlace& place, OldSecret old);

}  // namespace settings::server
