// SPDX-License-Identifier: MIT
#include "platform/uikit/UINavigationBar.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UINavigationBar)

}  // namespace platform
