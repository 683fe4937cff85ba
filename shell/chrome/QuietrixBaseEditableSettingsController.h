// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "platform/foundation/Value.h"
#include "platform/preferences/PSEditableListController.h"
#include "shell/chrome/ThemedChrome.h"

namespace quietrix {

/// An editable list screen in the product's chrome, with the share/follow button.
class QuietrixBaseEditableSettingsController : public platform::PSEditableListController {
    PLATFORM_CLASS(QuietrixBaseEditableSettingsController, platform::PSEditableListController)

  public:
    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;

    /// Puts the version notice under the copyright row, where the screen has one.
    void updateCopyRightSpecifier();

    void shareAction(const std::shared_ptr<platform::Object>& sender);
    void __tessaneTwitterAction(const std::shared_ptr<platform::Object>& sender);

    /// What the bar and the status bar looked like before this screen appeared.
    const std::shared_ptr<platform::UIColor>& prevTintcolor() const { return chrome_.prevTintcolor; }
    const std::shared_ptr<platform::UIColor>& prevBarTintcolor() const { return chrome_.prevBarTintcolor; }
    std::int64_t prevStatubarStyle() const { return chrome_.prevStatubarStyle; }

    /// The screen's settings dictionary, filled by subclasses; nil when there is none.
    const platform::Value& settings() const { return settings_; }
    void setSettings(platform::Value settings) { settings_ = std::move(settings); }

  private:
    SavedChrome chrome_;
    platform::Value settings_;
};

}  // namespace quietrix
