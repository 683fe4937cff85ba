// SPDX-License-Identifier: MIT
#pragma once

#include "platform/tonekit/TKTonePickerViewController.h"

namespace quietrix {

/// The phone's tone picker as a class of this program, so that its pickers can be told from others.
class QuietrixTKTonePickerViewController : public platform::TKTonePickerViewController {
    PLATFORM_CLASS(QuietrixTKTonePickerViewController, platform::TKTonePickerViewController)

  public:
    using TKTonePickerViewController::TKTonePickerViewController;
};

}  // namespace quietrix
