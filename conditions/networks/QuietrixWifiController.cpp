// SPDX-License-Identifier: MIT
#include "conditions/networks/QuietrixWifiController.h"

#include "profile/cells/QXSwitchCell.h"
#include "profile/model/QXWiFiManager.h"
#include "shell/base/Rows.h"

namespace quietrix {

using platform::SpecifierArray;
using platform::SpecifierList;
using platform::Value;

PLATFORM_REGISTER_CLASS(QuietrixWifiController)

// Rows

SpecifierArray QuietrixWifiController::specifiers() {
    if (specifiers_ && !specifiers_->empty()) return specifiers_;
    specifiers_ = std::make_shared<SpecifierList>(*wifiSpecifiers());
    return specifiers_;
}

const SpecifierArray& QuietrixWifiController::wifiSpecifiers() {
    if (wifiSpecifiers_ && !wifiSpecifiers_->empty()) return wifiSpecifiers_;
    wifiSpecifiers_ = std::make_shared<SpecifierList>();
    const Value networks = QXWiFiManager::sharedManager()->knownNetworks();
    for (const auto& network : *networks.array()) {
        const std::string ssid = network["SSID"].stringOr();
        wifiSpecifiers_->push_back(
            makeRow({.name = ssid,
                     .cell = platform::PSCellType::Switch,
                     .identifier = ssid,
                     .target = shared(this),
                     .set = platform::method("setPreferenceValue:specifier:",
                                             &QuietrixWifiController::setPreferenceValue_specifier),
                     .userInfo = network,
                     .properties = {{"cellClass", QXSwitchCell::staticClass().name()}}}));
    }
    return wifiSpecifiers_;
}

// Choosing

bool QuietrixWifiController::isWiFiSelected(const std::string& ssid) const {
    const auto record = profile();
    return record && record->hasWiFiNetwork(ssid);
}

void QuietrixWifiController::setPreferenceValue_specifier(const Value& /*value*/, const Row& specifier) {
    const std::string ssid = specifier->identifier().value_or("");
    if (const auto record = profile()) {
        if (isWiFiSelected(ssid)) {
            record->removeFromWiFiNetwork(ssid);
        } else {
            record->addToWiFiNetwork(ssid);
        }
    }
    saveProfile();
    // Networks of one name are one entry: their switches follow the one that was moved.
    for (const auto& row : *wifiSpecifiers()) {
        if (row != specifier && row->identifier() == specifier->identifier()) reloadSpecifier(row);
    }
}

std::shared_ptr<platform::PSTableCell> QuietrixWifiController::tableView_cellForRowAtIndexPath(
    const Table& table, platform::IndexPath path) {
    auto cell = PickerScreen::tableView_cellForRowAtIndexPath(table, path);
    const auto row = specifierAtIndexPath(path);
    const auto toggle = std::dynamic_pointer_cast<platform::PSSwitchTableCell>(cell);
    if (toggle && row) toggle->setOn(isWiFiSelected(row->identifier().value_or("")));
    return cell;
}

Saving QuietrixWifiController::saving() {
    return {.success = [self = shared(this), saved = profile()] { self->takeStoredRecordOf(saved); }};
}

}  // namespace quietrix
