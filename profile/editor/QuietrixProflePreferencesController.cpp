// SPDX-License-Identifier: MIT
#include "profile/editor/QuietrixProflePreferencesController.h"

#include <utility>

#include "platform/uikit/UIBarButtonItem.h"
#include "profile/model/QXProfilesManager.h"
#include "shell/base/ErrorAlert.h"
#include "shell/base/LocalNotifications.h"
#include "shell/base/Lookups.h"
#include "shell/base/NotificationNames.h"
#include "shell/chrome/EditedProfile.h"

namespace quietrix {

using platform::method;
using platform::SpecifierArray;
using platform::UIBarButtonItem;
using platform::Value;

namespace {

/// Where the rows that only an enabled profile has begin, after "Enable".
constexpr std::int64_t firstEnabledIndex = 4;
/// Where "Active Hours" stands, after "All Day".
constexpr std::int64_t activeHoursIndex = 6;

}  // namespace

std::optional<std::string> QuietrixProflePreferencesController::title() const {
    if (!profile_) return std::nullopt;
    return profile_->title();
}

// Values

Value QuietrixProflePreferencesController::readPreferenceValue(const Row& specifier) {
    return profile_ ? profile_->valueForKey(specifier->identifier().value_or("")) : Value();
}

void QuietrixProflePreferencesController::setPreferenceValue_specifier(const Value& value,
                                                                       const Row& specifier) {
    const std::string key = specifier->identifier().value_or("");
    if (profile_) profile_->setValue_forKey(value, key);
    saveProfile(nullptr);
    if (key == "enabled") {
        if (profile_ && profile_->isEnabled()) {
            std::int64_t index = firstEnabledIndex;
            for (const auto& row : profileEnabledSpecifiers())
                insertSpecifier_atIndex_animated(row, index++, true);
        } else {
            // The last row is the base screen's and stays.
            for (auto index = std::ssize(*rows()) - 2; index >= firstEnabledIndex; --index)
                removeSpecifierAtIndex_animated(index, true);
        }
    } else if (key == "playAlert") {
        enableOrDisableProfileAlertToneSpecifiers_animate(rows(), true);
    }
}

void QuietrixProflePreferencesController::setAllDayModeEnabled_specifier(const Value& value,
                                                                         const Row& specifier) {
    setPreferenceValue_specifier(value, specifier);
    const auto hours = activeTimeSpecifiers();
    if (profile_ && profile_->isAllDay()) {
        for (auto index = activeHoursIndex + std::ssize(hours) - 1; index >= activeHoursIndex; --index)
            removeSpecifierAtIndex_animated(index, true);
        // Takes the slider off as well, until the rows are built anew: users know the screen so.
        removeSpecifierAtIndex_animated(activeHoursIndex + 1, true);
    } else {
        std::int64_t index = activeHoursIndex;
        for (const auto& row : hours) insertSpecifier_atIndex_animated(row, index++, true);
    }
}

void QuietrixProflePreferencesController::enableOrDisableProfileAlertToneSpecifiers_animate(
    const SpecifierArray& list, bool animate) {
    if (profile_ && profile_->isEnabled() && profile_->isPlayAlert()) {
        const auto tone =
            vm__specifierByIdentifier_identifier(*this, alertSpecifiers(), "alertToneIdentifier");
        const std::int64_t alert = vm__indexByIdentifier_identifier(*this, *list, "playAlert");
        insertSpecifier_atIndex_animated(tone, alert + 1, animate);
    } else {
        removeSpecifierAtIndex_animated(vm__indexByIdentifier_identifier(*this, *list, "alertToneIdentifier"),
                                        animate);
    }
}

void QuietrixProflePreferencesController::enableOrDisableProfileSilentedSpecifiers_animate(
    const SpecifierArray& list, bool animate) {
    const auto volume = vm__specifierByIdentifier_identifier(*this, ringerVolumeSpecifiers(), "ringerVolume");
    const std::int64_t silented = vm__indexByIdentifier_identifier(*this, *list, "playbackVolumeSilented");
    insertSpecifier_atIndex_animated(volume, silented + 1, animate);
}

// Saving

void QuietrixProflePreferencesController::saveProfile(const std::shared_ptr<platform::Object>&) {
    saveEditedProfile(*this, profile_, {});
}

void QuietrixProflePreferencesController::addProfileAction(const std::shared_ptr<platform::Object>&) {
    QXProfilesManager::sharedManager()->addProfile_success_failure(
        profile_,
        [weakSelf = weak(this)] {
            const auto self = weakSelf.lock();
            if (!self) return;
            self->navigationItem()->setRightBarButtonItem_animated(nullptr, false);
            self->dismissViewControllerAnimated_completion(true, nullptr);
        },
        errorShownOn(*this, Screen::MayGo));
}

void QuietrixProflePreferencesController::dismissVieControllerAction(
    const std::shared_ptr<platform::Object>&) {
    dismissViewControllerAnimated_completion(true, nullptr);
}

// Life cycle and notifications

void QuietrixProflePreferencesController::viewDidLoad() {
    ProductScreen::viewDidLoad();
    if (profile_ && profile_->isNewProfile()) {
        navigationItem()->setLeftBarButtonItem_animated(
            std::make_shared<UIBarButtonItem>(
                platform::UIBarButtonSystemItemCancel, shared(this),
                method("dismissVieControllerAction:",
                       &QuietrixProflePreferencesController::dismissVieControllerAction)),
            false);
        navigationItem()->setRightBarButtonItem_animated(
            std::make_shared<UIBarButtonItem>(
                platform::UIBarButtonSystemItemSave, shared(this),
                method("addProfileAction:", &QuietrixProflePreferencesController::addProfileAction)),
            false);
    }
    observeLocally(ProfileDataUpdateNotification, *this,
                   "profileUpdated:", &QuietrixProflePreferencesController::profileUpdated);
    observeLocally(ProfileAppliedStateChangedNotification, *this, "profileAppliedStateChanged:",
                   &QuietrixProflePreferencesController::profileAppliedStateChanged);
}

void QuietrixProflePreferencesController::reloadSpecifiers() {
    profilesSpecifiers_.reset();
    ProductScreen::reloadSpecifiers();
    const auto list = rows();
    const auto afterAlert = specifierAtIndex(vm__indexByIdentifier_identifier(*this, *list, "playAlert") + 1);
    const bool hasTone = afterAlert && afterAlert->identifier() == "alertToneIdentifier";
    if (profile_ && profile_->isEnabled() && profile_->isPlayAlert() && !hasTone)
        enableOrDisableProfileAlertToneSpecifiers_animate(list, false);
}

std::shared_ptr<QXProfile> QuietrixProflePreferencesController::storedProfile() const {
    return QXProfilesManager::sharedManager()->profileByIdentifier_shouldReload(
        profile_ ? profile_->identifier() : "", false);
}

void QuietrixProflePreferencesController::showProfile(std::shared_ptr<QXProfile> profile) {
    if (specifier()) specifier()->setUserInfo(profile);
    setProfile(std::move(profile));
}

void QuietrixProflePreferencesController::profileUpdated(const platform::Notification&) {
    saveProfile(nullptr);
    // One that is not in the store yet is kept.
    if (auto stored = storedProfile()) showProfile(std::move(stored));
    reloadSpecifiers();
}

void QuietrixProflePreferencesController::profileAppliedStateChanged(const platform::Notification&) {
    showProfile(storedProfile());
    reloadSpecifiers();
}

}  // namespace quietrix
