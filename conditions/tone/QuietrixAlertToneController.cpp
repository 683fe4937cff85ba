// SPDX-License-Identifier: MIT
#include "conditions/tone/QuietrixAlertToneController.h"

#include "conditions/ConditionScreen.h"
#include "profile/model/PresentRecord.h"
#include "profile/model/QXProfilesManager.h"
#include "shell/base/ErrorAlert.h"
#include "shell/base/NotificationNames.h"

namespace quietrix {

using platform::NotificationCenter;
using platform::TKTonePickerViewController;

PLATFORM_REGISTER_CLASS(QuietrixAlertToneController)

namespace {

constexpr std::int64_t alertType = 10;
constexpr const char* toneWithoutAChoice = "texttone:Calendar Alert";
/// The navigation bar with the status bar above it, in points.
constexpr double barHeight = 64;

}  // namespace

void QuietrixAlertToneController::loadView() {
    QuietrixUIToneController::loadView();
    const auto picker = std::make_shared<QuietrixTKTonePickerViewController>(alertType);
    createdTonePickerViewController_ = picker;
    picker->setShowsVibrations(false);
    picker->setShowsStoreButtonInNavigationBar(true);
    picker->setNoneAtTop(true);
    if (picker->respondsToSelector("setShowsToneStore:")) picker->setShowsToneStore(false);
    const auto profile = profileOfScreen(*this);
    const std::string identifier =
        profile ? profile->alertToneIdentifier().value_or(toneWithoutAChoice) : toneWithoutAChoice;
    picker->setSelectedToneIdentifier(identifier);
    picker->setDefaultToneIdentifier(identifier);
    picker->setDelegate(shared(this));
    setTonePickerViewController(picker);
}

void QuietrixAlertToneController::viewDidLoad() {
    QuietrixUIToneController::viewDidLoad();
    const auto& list = createdTonePickerViewController_->view();
    const platform::Rect frame = list->frame();
    list->setFrame({frame.x, barHeight, frame.width, frame.height - barHeight});
    NotificationCenter::defaultCenter().addObserver_selector_name_object(
        shared(this),
        platform::method("profileAppliedStateChanged:",
                         &QuietrixAlertToneController::profileAppliedStateChanged),
        ProfileAppliedStateChangedNotification, nullptr);
}

void QuietrixAlertToneController::tonePickerViewController_selectedToneWithIdentifier(
    const std::shared_ptr<TKTonePickerViewController>& picker, const std::optional<std::string>& identifier) {
    if (const auto profile = profileOfScreen(*this))
        profile->setAlertToneIdentifier(identifier ? *identifier : picker->defaultToneIdentifier());
    saveProfile();
}

void QuietrixAlertToneController::saveProfile() {
    const auto profile = profileOfScreen(*this);
    if (profile && profile->isNewProfile()) {
        NotificationCenter::defaultCenter().postNotificationName_object_userInfo(
            ProfileDataUpdateNotification, nullptr, nullptr);
        return;
    }
    QXProfilesManager::sharedManager()->updateProfile_success_failure(
        profile,
        [] {
            NotificationCenter::defaultCenter().postNotificationName_object_userInfo(
                ProfileAppliedStateChangedNotification, nullptr, nullptr);
        },
        [self = shared(this)](const platform::Error& error) { qx_showError(*self, error); });
}

void QuietrixAlertToneController::profileAppliedStateChanged(const platform::Notification&) {
    if (specifier())
        specifier()->setUserInfo(platform::Dictionary{{"profile", presentRecordOf(profileOfScreen(*this))}});
}

}  // namespace quietrix
