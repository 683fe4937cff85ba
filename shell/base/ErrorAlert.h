// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>

#include "platform/foundation/Error.h"
#include "platform/preferences/PSViewController.h"

namespace quietrix {

/// Shows the error in the plug-in's one error alert, presented from the screen. Without an error the alert
/// has no message. Main thread.
void qx_showError(platform::PSViewController& screen, const std::optional<platform::Error>& error);

/// Whether whoever waits for an answer keeps the screen alive until then.
enum class Screen { Kept, MayGo };

/// What shows an error on the screen, if it is still there by then.
std::function<void(const platform::Error&)> errorShownOn(platform::PSViewController& screen, Screen waiting);

}  // namespace quietrix
