// SPDX-License-Identifier: MIT
#include "RingerController.h"

#include "RingerRows.h"
#include "RingerSettings.h"
#include "platform/foundation/Bundle.h"
#include "platform/preferences/PSConfirmationSpecifier.h"
#include "platform/uikit/UIImage.h"

namespace ringer {

using platform::method;
using platform::PSCellType;
using platform::PSSpecifier;
using platform::Value;

PLATFORM_REGISTER_CLASS(RingerController)

platform::SpecifierArray RingerController::specifiers() {
    if (specifiers_) return specifiers_;
    const auto self = shared(this);
    const auto set = method("setPreferenceValue:specifier:", &RingerController::setPreferenceValue_specifier);
    const auto get = method("readPreferenceValue:", &RingerController::readPreferenceValue);
    const auto bell =
        platform::UIImage::imageNamed_inBundle("Bell", platform::Bundle::bundleForClass(getClass()));
    specifiers_ = std::make_shared<platform::SpecifierList>(
        platform::SpecifierList{makeGroup(text("Ringing"), text("The greeting is said after each bell.")),
                                makeRow({.name = text("Ring bells"),
                                         .identifier = "enabled",
                                         .cell = PSCellType::Switch,
                                         .target = self,
                                         .set = set,
                                         .get = get}),
                                makeRow({.name = text("Volume"),
                                         .identifier = "volume",
                                         .cell = PSCellType::Slider,
                                         .target = self,
                                         .set = set,
                                         .get = get,
                                         .properties = {{"min", 0.0}, {"max", 1.0}}}),
                                makeRow({.name = text("Greeting"),
                                         .identifier = "greeting",
                                         .cell = PSCellType::EditText,
                                         .target = self,
                                         .set = set,
                                         .get = get,
                                         .properties = {{"placeholder", text("Good day")}}}),
                                makeGroup(text("When and what")),
                                makeRow({.name = text("Bells"),
                                         .identifier = "bells",
                                         .cell = PSCellType::Link,
                                         .detail = "RingerBellsController",
                                         .properties = {{"iconImage", Value(bell)}}}),
                                makeRow({.name = text("Times"),
                                         .identifier = "times",
                                         .cell = PSCellType::Link,
                                         .detail = "PSDetailController",
                                         .pane = "RingerTimesPane"}),
                                makeRow({.name = text("Silent during"),
                                         .identifier = "silentCalendars",
                                         .cell = PSCellType::Link,
                                         .detail = "RingerCalendarsController"}),
                                makeGroup({}), resetRow()});
    return specifiers_;
}

std::shared_ptr<PSSpecifier> RingerController::resetRow() {
    const auto row =
        platform::PSConfirmationSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            text("Reset"), shared(this), {}, {}, {}, PSCellType::Button, {});
    row->setIdentifier("reset");
    row->setPrompt(text("All bells and settings are forgotten."));
    row->setOkButton(text("Reset"));
    row->setCancelButton(text("Cancel"));
    row->setProperty_forKey(true, "isDestructive");
    row->setButtonAction(method("resetAction:", &RingerController::resetAction));
    return row;
}

void RingerController::viewDidLoad() {
    PSListController::viewDidLoad();
    platform::NotificationCenter::defaultCenter().addObserver_selector_name_object(
        shared(this), method("settingsChanged:", &RingerController::settingsChanged),
        settings::changedNotification, nullptr);
}

std::shared_ptr<platform::PSTableCell> RingerController::tableView_cellForRowAtIndexPath(
    const std::shared_ptr<platform::UITableView>& table, platform::IndexPath path) {
    auto cell = PSListController::tableView_cellForRowAtIndexPath(table, path);
    if (cell && cell->specifier()->identifier() == "bells") {
        const Value bells = settings::valueForKey("bells");
        cell->detailTextLabel()->setText(std::to_string(bells.array() ? bells.array()->size() : 0));
    }
    return cell;
}

void RingerController::setPreferenceValue_specifier(const Value& value,
                                                    const std::shared_ptr<PSSpecifier>& specifier) {
    showError(*this, settings::setValue_forKey(value, specifier->identifier().value_or("")));
}

Value RingerController::readPreferenceValue(const std::shared_ptr<PSSpecifier>& specifier) {
    return settings::valueForKey(specifier->identifier().value_or(""));
}

void RingerController::resetAction(const std::shared_ptr<PSSpecifier>& /*specifier*/) {
    showError(*this, settings::reset());
}

void RingerController::settingsChanged(const platform::Notification& /*notification*/) {
    // The other cells ask their getters at each look; this one's text was set when it was made.
    for (const auto& row : *specifiers()) {
        if (row->identifier() == "bells") reloadSpecifier(row);
    }
}

}  // namespace ringer
