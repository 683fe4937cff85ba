// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include "platform/foundation/DateFormatter.h"
#include "platform/preferences/PSDetailController.h"
#include "platform/tonekit/ToneScreen.h"
#include "platform/uikit/UIDatePicker.h"
#include "platform/uikit/UITableView.h"

namespace settings {

/// A screen's time picker with the rows whose times it edits, whichever bundle's pane holds them. Neither is
/// null.
struct TimePicker {
    std::shared_ptr<platform::UITableView> rows;
    std::shared_ptr<platform::UIDatePicker> wheel;
};

/// The time picker of the screen, laid out; nothing where there is none, which a null screen has not. Main
/// thread.
std::optional<TimePicker> timePickerOf(const std::shared_ptr<platform::UIViewController>& screen);

/// The tone picker of the screen; null where there is none: one that was never put on the screen is not seen
/// and cannot be tapped. The screen may be null. Main thread.
std::shared_ptr<platform::TKTonePickerViewController> tonePickerOf(
    const std::shared_ptr<platform::UIViewController>& screen);

/// Reads and writes a time of day as "5:00 PM", the form in which the protocol has it.
platform::DateFormatter timeOfDayFormatter();

}  // namespace settings
