// SPDX-License-Identifier: MIT
#include "platform/uikit/UISwitch.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UISwitch)

}  // namespace platform
