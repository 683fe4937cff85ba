// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "conditions/PickerScreen.h"
#include "conditions/tone/QuietrixTKTonePickerViewController.h"
#include "conditions/tone/QuietrixUIToneController.h"

namespace quietrix {

/// Chooses the sound of a profile's alerts. The opening row's user info holds the profile under "profile".
/// Each choice for an existing profile is saved at once; one for a new profile is announced to the editor.
/// Main thread.
class QuietrixAlertToneController : public PickerScreen<QuietrixUIToneController>,
                                    public platform::TKTonePickerViewControllerDelegate {
    PLATFORM_CLASS(QuietrixAlertToneController, QuietrixUIToneController)

  public:
    /// Makes the picker, with the profile's tone selected.
    void loadView() override;
    /// Leaves room for the navigation bar above the picker.
    void viewDidLoad() override;
    /// The one that this screen made, whether or not its superclass shows it.
    std::shared_ptr<platform::TKTonePickerViewController> tonePickerViewController() override {
        return createdTonePickerViewController_;
    }
    const std::shared_ptr<platform::TKTonePickerViewController>& createdTonePickerViewController() const {
        return createdTonePickerViewController_;
    }
    /// "None" stores the picker's default tone.
    void tonePickerViewController_selectedToneWithIdentifier(
        const std::shared_ptr<platform::TKTonePickerViewController>& picker,
        const std::optional<std::string>& identifier) override;

  protected:
    Saving saving() override;

  private:
    std::shared_ptr<platform::TKTonePickerViewController> createdTonePickerViewController_;
};

}  // namespace quietrix
