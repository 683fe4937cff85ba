// SPDX-License-Identifier: MIT
#include "settings/commands/PickerCommands.h"

#include <cstdint>
#include <optional>
#include <string>

#include "settings/application/Pickers.h"
#include "settings/application/TopScreen.h"

namespace settings {

using platform::failure;
using platform::Result;

namespace {

constexpr const char* noTimePicker = "This screen has no time picker.";
constexpr const char* noTonePicker = "This screen has no tone picker.";
constexpr const char* noIdentifier = "\"identifier\" must be a text or null.";

}  // namespace

Outcome<void> pickTimeRow(Application& /*application*/, const CommandFields& fields) {
    const Result<std::int64_t> row = fields.integer("row");
    if (!row) return std::unexpected(row.error());
    const auto picker = timePickerOf(TopScreen::now().screen);
    if (!picker) return failure(noTimePicker);
    if (!picker->rows->userTappedRowAtIndexPath({0, *row}))
        return failure("There is no row " + std::to_string(*row) + " to edit a time of.");
    return {};
}

Outcome<void> pickTime(Application& /*application*/, const CommandFields& fields) {
    const Result<std::string> time = fields.text("time");
    if (!time) return std::unexpected(time.error());
    const auto picker = timePickerOf(TopScreen::now().screen);
    if (!picker) return failure(noTimePicker);
    const auto date = timeOfDayFormatter().dateFromString(*time);
    if (!date) return failure("\"" + *time + "\" is no time of day as \"5:00 PM\".");
    if (!picker->wheel->userChoseDate(*date)) return failure("The time picker is disabled.");
    return {};
}

Outcome<void> pickTone(Application& /*application*/, const CommandFields& fields) {
    if (!fields.has("identifier")) return failure(noIdentifier);
    std::optional<std::string> identifier;
    if (!fields.value("identifier").isNil()) {
        Result<std::string> text = fields.text("identifier");
        if (!text) return failure(noIdentifier);
        identifier = std::move(*text);
    }
    const auto picker = tonePickerOf(TopScreen::now().screen);
    if (!picker) return failure(noTonePicker);
    return picker->userChoseTone(identifier);
}

}  // namespace settings
