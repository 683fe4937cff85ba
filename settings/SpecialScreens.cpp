// SPDX-License-Identifier: MIT
#include "settings/SpecialScreens.h"

#include <utility>

#include "platform/foundation/DateFormatter.h"
#include "platform/foundation/Device.h"
#include "platform/preferences/PSDetailController.h"
#include "platform/tonekit/ToneScreen.h"
#include "platform/uikit/UIDatePicker.h"
#include "platform/uikit/UITableView.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::UIDatePicker;
using platform::UITableView;

using platform::failure;
using platform::Result;
using platform::UIViewController;
using platform::Value;

namespace {

constexpr const char* noTimePicker = "This screen has no time picker.";
constexpr const char* noTonePicker = "This screen has no tone picker.";

/// Two rows and a time picker, whichever bundle's pane holds them.
struct TimePane {
    std::shared_ptr<UITableView> table;
    std::shared_ptr<UIDatePicker> picker;
};

std::optional<TimePane> findTimePane(const std::shared_ptr<UIViewController>& screen) {
    const auto detail = std::dynamic_pointer_cast<platform::PSDetailController>(screen);
    if (!detail || !detail->pane()) return std::nullopt;
    TimePane found;
    for (const auto& view : detail->pane()->subviews()) {
        if (auto table = std::dynamic_pointer_cast<UITableView>(view)) found.table = std::move(table);
        if (auto picker = std::dynamic_pointer_cast<UIDatePicker>(view)) found.picker = std::move(picker);
    }
    if (!found.table || !found.picker) return std::nullopt;
    if (found.picker->datePickerMode() != platform::UIDatePickerModeTime) return std::nullopt;
    detail->pane()->layoutIfNeeded();
    return found;
}

platform::DateFormatter timeFormatter() {
    platform::DateFormatter formatter;
    formatter.setDateFormat("h:mm a");
    return formatter;
}

/// A picker that was never put on the screen is not seen and cannot be tapped.
std::shared_ptr<platform::TKTonePickerViewController> findTonePicker(
    const std::shared_ptr<UIViewController>& screen) {
    const auto host = std::dynamic_pointer_cast<platform::TonePickerHost>(screen);
    auto picker = host ? host->tonePickerViewController() : nullptr;
    return picker && picker->view()->superview() ? picker : nullptr;
}

/// The nearest class of the phone's own that the screen stands on.
const platform::Class& systemClassOf(const UIViewController& screen) {
    const platform::Class* cls = &screen.getClass();
    while (cls->superclass() != nullptr && !platform::ClassRegistry::shared().bundlePath(*cls).empty())
        cls = cls->superclass();
    return *cls;
}

}  // namespace

Value timePane(const std::shared_ptr<UIViewController>& screen) {
    const auto pane = findTimePane(screen);
    if (!pane) return nullptr;
    Array rows;
    for (std::int64_t row = 0; row < pane->table->numberOfRowsInSection(0); ++row) {
        const auto cell = pane->table->cellForRowAtIndexPath({0, row});
        rows.emplace_back(cell ? cell->textLabel()->text().value_or("") : "");
    }
    const auto selected = pane->table->indexPathForSelectedRow();
    const auto time = pane->picker->date();
    return Dictionary{{"rows", std::move(rows)},
                      {"selected", selected ? selected->row : std::int64_t{-1}},
                      {"tag", pane->picker->tag()},
                      {"time", time ? Value(timeFormatter().stringFromDate(*time)) : Value()}};
}

Result<void> pickTimeRow(const std::shared_ptr<UIViewController>& screen, std::int64_t row) {
    const auto pane = findTimePane(screen);
    if (!pane) return failure(noTimePicker);
    if (!pane->table->userTappedRowAtIndexPath({0, row}))
        return failure("There is no row " + std::to_string(row) + " to edit a time of.");
    return {};
}

Result<void> pickTime(const std::shared_ptr<UIViewController>& screen, const std::string& time) {
    const auto pane = findTimePane(screen);
    if (!pane) return failure(noTimePicker);
    const auto date = timeFormatter().dateFromString(time);
    if (!date) return failure("\"" + time + "\" is no time of day as \"5:00 PM\".");
    if (!pane->picker->userChoseDate(*date)) return failure("The time picker is disabled.");
    return {};
}

Value tonePicker(const std::shared_ptr<UIViewController>& screen) {
    const auto picker = findTonePicker(screen);
    if (!picker) return nullptr;
    Array list;
    if (const auto& source = platform::Device::current().tones) {
        for (const auto& tone : source->tones())
            list.emplace_back(Dictionary{{"identifier", tone.identifier}, {"name", tone.name}});
    }
    const auto& selected = picker->selectedToneIdentifier();
    return Dictionary{{"superclass", systemClassOf(*screen).name()},
                      {"selected", selected ? Value(*selected) : Value()},
                      {"default", picker->defaultToneIdentifier()},
                      {"noneAtTop", picker->noneAtTop()},
                      {"vibrations", picker->showsVibrations()},
                      {"storeButton", picker->showsStoreButtonInNavigationBar()},
                      {"list", std::move(list)}};
}

Result<void> pickTone(const std::shared_ptr<UIViewController>& screen,
                      const std::optional<std::string>& identifier) {
    const auto picker = findTonePicker(screen);
    return picker ? picker->userChoseTone(identifier) : failure(noTonePicker);
}

}  // namespace settings
