// SPDX-License-Identifier: MIT
#pragma once

#include "shell/chrome/QuietrixBaseEditableSettingsController.h"

namespace quietrix {

/// A themed screen with the rows that a test gives it.
class ThemedScreen : public QuietrixBaseEditableSettingsController {
    PLATFORM_CLASS(ThemedScreen, QuietrixBaseEditableSettingsController)

  public:
    platform::SpecifierArray specifiers() override {
        specifiers_ = rows;
        return specifiers_;
    }

    platform::SpecifierArray rows = std::make_shared<platform::SpecifierList>();
};

}  // namespace quietrix
