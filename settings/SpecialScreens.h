// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "platform/foundation/Error.h"
#include "platform/uikit/UIViewController.h"

namespace settings {

/// The screens that are more than a list of rows: what they show, and the user's moves on them. On any other
/// screen there is nothing to show, and each move is an error that says so. The screen may be null. Main
/// thread.

/// The state's "pane": the time picker with its two rows.
platform::Value timePane(const std::shared_ptr<platform::UIViewController>& screen);
/// Selects From (0) or To (1).
platform::Result<void> pickTimeRow(const std::shared_ptr<platform::UIViewController>& screen,
                                   std::int64_t row);
/// Moves the picker to a time as "5:00 PM".
platform::Result<void> pickTime(const std::shared_ptr<platform::UIViewController>& screen,
                                const std::string& time);

/// The state's "tones": the tone picker with its list.
platform::Value tonePicker(const std::shared_ptr<platform::UIViewController>& screen);
/// Picks the tone of that identifier; none is the "None" entry.
platform::Result<void> pickTone(const std::shared_ptr<platform::UIViewController>& screen,
                                const std::optional<std::string>& identifier);

}  // namespace settings
