// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/foundation/Error.h"
#include "platform/preferences/PSViewController.h"

namespace quietrix {

/// Shows the error in the plug-in's one error alert, presented from the screen. Without an error the alert
/// has no message. Main thread.
void qx_showError(platform::PSViewController& screen, const std::optional<platform::Error>& error);

}  // namespace quietrix
