// SPDX-License-Identifier: MIT
#include "platform/preferences/PSEditingPane.h"

namespace platform {

PLATFORM_REGISTER_CLASS(PSEditingPane)

}  // namespace platform
