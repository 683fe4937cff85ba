// SPDX-License-Identifier: MIT
#include "shell/chrome/QuietrixBaseEditableSettingsController.h"

namespace quietrix {

PLATFORM_REGISTER_CLASS(QuietrixBaseEditableSettingsController)

}  // namespace quietrix
