// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/Value.h"
#include "platform/uikit/UIViewController.h"

namespace settings {

/// What a state shows of the pickers that a screen may have in place of rows; nil where it has none, which a
/// null screen has not. Main thread.

/// "pane": the time picker with its rows.
platform::Value timePickerValue(const std::shared_ptr<platform::UIViewController>& screen);
/// "tones": the tone picker with its list.
platform::Value tonePickerValue(const std::shared_ptr<platform::UIViewController>& screen);

}  // namespace settings
