// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIAlertView.h"

namespace velmora {

/// Says that something is being done: an alert without buttons on top of whatever is shown, which keeps the
/// user from everything else until it is closed. Main thread.
class VMActivityAlertView : public platform::UIAlertView {
    PLATFORM_CLASS(VMActivityAlertView, platform::UIAlertView)

  public:
    using UIAlertView::UIAlertView;

    /// Nothing happens when it is not shown.
    void close() { dismiss(); }
};

}  // namespace velmora
