// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIAlertController.h"

namespace platform {

/// The question that a confirmation row asks: the row's prompt as the message, its ok button first.
class PSConfirmationController : public UIAlertController {
    PLATFORM_CLASS(PSConfirmationController, UIAlertController)

  public:
    using UIAlertController::UIAlertController;
};

}  // namespace platform
