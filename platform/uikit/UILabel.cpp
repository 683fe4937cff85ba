// SPDX-License-Identifier: MIT
#include "platform/uikit/UILabel.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UILabel)

}  // namespace platform
