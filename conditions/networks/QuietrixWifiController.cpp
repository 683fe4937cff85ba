// SPDX-License-Identifier: MIT
#include "conditions/networks/QuietrixWifiController.h"

#include "conditions/ConditionScreen.h"
#include "profile/cells/QXSwitchCell.h"
#include "profile/model/PresentRecord.h"
#include "profile/model/QXProfilesManager.h"
#include "profile/model/QXWiFiManager.h"
#include "shell/base/ErrorAlert.h"
#include "shell/base/NotificationNames.h"

namespace quietrix {

using platform::method;
using platform::PSSpecifier;
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
        const auto row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            ssid, shared(this),
            method("setPreferenceValue:specifier:", &QuietrixWifiController::setPreferenceValue_specifier),
            {}, "", platform::PSCellType::Switch, "");
        row->setProperty_forKey(QXSwitchCell::staticClass().name(), "cellClass");
        row->setIdentifier(ssid);
        row->setUserInfo(network);
        wifiSpecifiers_->push_back(row);
    }
    return wifiSpecifiers_;
}

// Choosing

bool QuietrixWifiController::isWiFiSelected(const std::string& ssid) const {
    const auto profile = profileOfScreen(*this);
    return profile && profile->hasWiFiNetwork(ssid);
}

void QuietrixWifiController::setPreferenceValue_specifier(const Value& /*value*/, const Row& specifier) {
    const std::string ssid = specifier->identifier().value_or("");
    if (const auto profile = profileOfScreen(*this)) {
        if (isWiFiSelected(ssid)) {
            profile->removeFromWiFiNetwork(ssid);
        } else {
            profile->addToWiFiNetwork(ssid);
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
    auto cell = ProductScreen::tableView_cellForRowAtIndexPath(table, path);
    const auto row = specifierAtIndex(indexForRow_inGroup(path.row, path.section));
    const auto toggle = std::dynamic_pointer_cast<platform::PSSwitchTableCell>(cell);
    if (toggle && row) toggle->setOn(isWiFiSelected(row->identifier().value_or("")));
    return cell;
}

// Saving and following

void QuietrixWifiController::saveProfile() {
    const auto profile = profileOfScreen(*this);
    if (profile && profile->isNewProfile()) return;
    const auto self = shared(this);
    QXProfilesManager::sharedManager()->updateProfile_success_failure(
        profile,
        [self, profile] {
            if (self->specifier())
                self->specifier()->setUserInfo(platform::Dictionary{{"profile", presentRecordOf(profile)}});
        },
        [self](const platform::Error& error) { qx_showError(*self, error); });
}

void QuietrixWifiController::viewDidLoad() {
    ProductScreen::viewDidLoad();
    platform::NotificationCenter::defaultCenter().addObserver_selector_name_object(
        shared(this),
        method("profileAppliedStateChanged:", &QuietrixWifiController::profileAppliedStateChanged),
        ProfileAppliedStateChangedNotification, nullptr);
}

void QuietrixWifiController::profileAppliedStateChanged(const platform::Notification&) {
    if (specifier())
        specifier()->setUserInfo(platform::Dictionary{{"profile", presentRecordOf(profileOfScreen(*this))}});
}

}  // namespace quietrix
