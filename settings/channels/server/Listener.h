// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "platform/foundation/Error.h"

namespace settings::server {

/// A socket that listens on that port of 127.0.0.1, 0 for any free one; not kept open by programs that this
/// one starts. The caller owns it. The error is a sentence that names the port.
platform::Result<int> listenOnLoopback(std::uint16_t port);

/// The port that the socket listens on; 0 for a descriptor that is no such socket.
std::uint16_t portOfListener(int listener);

}  // namespace settings::server
