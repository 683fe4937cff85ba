// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/foundation/Error.h"

namespace settings::server {

/// The socket that a service manager has started this process for (LISTEN_PID, LISTEN_FDS: the descriptors
/// from 3 on); nothing when it has not. To be asked for once, before other threads run: the variables are
/// unset, so that no program that this one starts takes them for its own, and the socket is not kept open by
/// those. Any but one socket that listens on 127.0.0.1 is an error, which says what is wrong. The caller owns
/// it.
platform::Result<std::optional<int>> activatedListener();

/// Tells the service manager that the server can be reached (NOTIFY_SOCKET), if it wants to know.
void tellReady();

}  // namespace settings::server
