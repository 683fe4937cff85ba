// SPDX-License-Identifier: MIT
#include "platform/preferences/PSConfirmationController.h"

namespace platform {

PLATFORM_REGISTER_CLASS(PSConfirmationController)

}  // namespace platform
