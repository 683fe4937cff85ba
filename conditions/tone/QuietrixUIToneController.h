// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "platform/tonekit/ToneScreen.h"
#include "shell/chrome/ThemedChrome.h"

namespace quietrix {

/// The Settings application's own tone screen in the product's colours. The class of that screen differs
/// between system versions, so this one takes its place in the class tree when it is loaded: it holds an
/// instance of the class that it stands on and passes on what that class does. Main thread.
class QuietrixUIToneController : public platform::PSViewController, public platform::TonePickerHost {
    PLATFORM_CLASS(QuietrixUIToneController, platform::PSViewController)

  public:
    QuietrixUIToneController();

    /// Chooses the superclass among those that exist; none leaves the class where it was declared, with one
    /// log line on the systems that should have one. Runs when the bundle is loaded.
    static void load();

    void setSpecifier(std::shared_ptr<platform::PSSpecifier> specifier) override;
    void loadView() override;
    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;

    std::shared_ptr<platform::TKTonePickerViewController> tonePickerViewController() override;
    /// Nothing without a superclass that shows it.
    void setTonePickerViewController(std::shared_ptr<platform::TKTonePickerViewController> picker);

    void shareAction(const std::shared_ptr<platform::Object>& sender);
    void __tessaneTwitterAction(const std::shared_ptr<platform::Object>& sender);

    /// What the bar and the status bar looked like before this screen appeared.
    const std::shared_ptr<platform::UIColor>& prevTintcolor() const { return chrome_.prevTintcolor; }
    const std::shared_ptr<platform::UIColor>& prevBarTintcolor() const { return chrome_.prevBarTintcolor; }
    std::int64_t prevStatubarStyle() const { return chrome_.prevStatubarStyle; }

    /// Held for whoever fills them; nothing on this screen does.
    platform::SpecifierArray enabledProfilesSpecifiers;
    platform::SpecifierArray disabledProfilesSpecifiers;
    platform::SpecifierArray aboutSpecifiers;

  private:
    /// An instance of the chosen superclass; null when there is none.
    std::shared_ptr<platform::ToneScreen> toneScreen_;
    SavedChrome chrome_;
};

}  // namespace quietrix
