// SPDX-License-Identifier: MIT
#include "settings/application/Pickers.h"

#include <utility>

namespace settings {

using platform::UIDatePicker;
using platform::UITableView;
using platform::UIViewController;

std::optional<TimePicker> timePickerOf(const std::shared_ptr<UIViewController>& screen) {
    const auto detail = std::dynamic_pointer_cast<platform::PSDetailController>(screen);
    if (!detail || !detail->pane()) return std::nullopt;
    TimePicker found;
    for (const auto& view : detail->pane()->subviews()) {
        if (auto rows = std::dynamic_pointer_cast<UITableView>(view)) found.rows = std::move(rows);
        if (auto wheel = std::dynamic_pointer_cast<UIDatePicker>(view)) found.wheel = std::move(wheel);
    }
    if (!found.rows || !found.wheel) return std::nullopt;
    if (found.wheel->datePickerMode() != platform::UIDatePickerModeTime) return std::nullopt;
    detail->pane()->layoutIfNeeded();
    return found;
}

std::shared_ptr<platform::TKTonePickerViewController> tonePickerOf(
    const std::shared_ptr<UIViewController>& screen) {
    const auto host = std::dynamic_pointer_cast<platform::TonePickerHost>(screen);
    auto picker = host ? host->tonePickerViewController() : nullptr;
    return picker && picker->view()->superview() ? picker : nullptr;
}

platform::DateFormatter timeOfDayFormatter() {
    platform::DateFormatter formatter;
    formatter.setDateFormat("h:mm a");
    return formatter;
}

}  // namespace settings
