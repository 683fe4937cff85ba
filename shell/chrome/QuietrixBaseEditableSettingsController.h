// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "platform/foundation/Value.h"
#include "platform/preferences/PSEditableListController.h"
#include "shell/chrome/ChromedScreen.h"

namespace quietrix {

/// An editable list screen in the product's chrome, with the share/follow button.
class QuietrixBaseEditableSettingsController : public ChromedScreen<platform::PSEditableListController> {
    PLATFORM_CLASS(QuietrixBaseEditableSettingsController, platform::PSEditableListController)

  public:
    /// The screen's settings dictionary, filled by subclasses; nil when there is none.
    const platform::Value& settings() const { return settings_; }
    void setSettings(platform::Value settings) { settings_ = std::move(settings); }

  private:
    platform::Value settings_;
};

}  // namespace quietrix
