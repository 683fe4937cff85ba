// SPDX-License-Identifier: MIT
#include "conditions/tone/QuietrixTKTonePickerViewController.h"

namespace quietrix {

PLATFORM_REGISTER_CLASS(QuietrixTKTonePickerViewController)

}  // namespace quietrix
