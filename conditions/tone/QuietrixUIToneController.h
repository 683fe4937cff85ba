// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/tonekit/ToneScreen.h"
#include "shell/chrome/ChromedScreen.h"

namespace quietrix {

/// The Settings application's own tone screen in the product's colours. The class of that screen differs
/// between system versions, so this one takes its place in the class tree when it is loaded: it holds an
/// instance of the class that it stands on and passes on what that class does. Main thread.
class QuietrixUIToneController : public ChromedScreen<platform::PSViewController, setTitleLabel>,
                                 public platform::TonePickerHost {
    PLATFORM_CLASS(QuietrixUIToneController, platform::PSViewController)

  public:
    QuietrixUIToneController();

    /// Chooses the superclass among those that exist; none leaves the class where it was declared, with one
    /// log line on the systems that should have one. Runs when the bundle is loaded.
    static void load();

    void setSpecifier(std::shared_ptr<platform::PSSpecifier> specifier) override;
    void loadView() override;

    std::shared_ptr<platform::TKTonePickerViewController> tonePickerViewController() override;
    /// Nothing without a superclass that shows it.
    void setTonePickerViewController(std::shared_ptr<platform::TKTonePickerViewController> picker);

    /// Held for whoever fills them; nothing on this screen does.
    platform::SpecifierArray enabledProfilesSpecifiers;
    platform::SpecifierArray disabledProfilesSpecifiers;
    platform::SpecifierArray aboutSpecifiers;

  private:
    /// An instance of the chosen superclass; null when there is none.
    std::shared_ptr<platform::ToneScreen> toneScreen_;
};

}  // namespace quietrix
