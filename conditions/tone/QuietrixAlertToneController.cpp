// SPDX-License-Identifier: MIT
#include "conditions/tone/QuietrixAlertToneController.h"

namespace quietrix {

using platform::TKTonePickerViewController;

PLATFORM_REGISTER_CLASS(QuietrixAlertToneController)

namespace {

constexpr std::int64_t alertType = 10;
constexpr const char* toneWithoutAChoice = "texttone:Calendar Alert";
/// The navigation bar with the status bar above it, in points.
constexpr double barHeight = 64;

}  // namespace

void QuietrixAlertToneController::loadView() {
    PickerScreen::loadView();
    const auto picker = std::make_shared<QuietrixTKTonePickerViewController>(alertType);
    createdTonePickerViewController_ = picker;
    picker->setShowsVibrations(false);
    picker->setShowsStoreButtonInNavigationBar(true);
    picker->setNoneAtTop(true);
    if (picker->respondsToSelector("setShowsToneStore:")) picker->setShowsToneStore(false);
    const auto record = profile();
    const std::string identifier =
        record ? record->alertToneIdentifier().value_or(toneWithoutAChoice) : toneWithoutAChoice;
    picker->setSelectedToneIdentifier(identifier);
    picker->setDefaultToneIdentifier(identifier);
    picker->setDelegate(shared(this));
    setTonePickerViewController(picker);
}

void QuietrixAlertToneController::viewDidLoad() {
    PickerScreen::viewDidLoad();
    const auto& list = createdTonePickerViewController_->view();
    const platform::Rect frame = list->frame();
    list->setFrame({frame.x, barHeight, frame.width, frame.height - barHeight});
}

void QuietrixAlertToneController::tonePickerViewController_selectedToneWithIdentifier(
    const std::shared_ptr<TKTonePickerViewController>& picker, const std::optional<std::string>& identifier) {
    if (const auto record = profile())
        record->setAlertToneIdentifier(identifier ? *identifier : picker->defaultToneIdentifier());
    saveProfile();
}

Saving QuietrixAlertToneController::saving() {
    return {.newProfile = NewProfile::IsAnnounced,
            .success = [] { postLocally(ProfileAppliedStateChangedNotification); }};
}

}  // namespace quietrix
