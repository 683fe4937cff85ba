// SPDX-License-Identifier: MIT
#include "velmora/VMActivityAlertView.h"

namespace velmora {

PLATFORM_REGISTER_CLASS(VMActivityAlertView)

}  // namespace velmora
