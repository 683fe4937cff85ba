// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/PSViewController.h"

namespace platform {

/// Stands in for a screen whose class nobody has: a plain screen with the title only. As the root of a
/// presented navigation controller it has a Done button that dismisses it, so that it is never a dead end.
class PSPlaceholderController : public PSViewController {
    PLATFORM_CLASS(PSPlaceholderController, PSViewController)

  public:
    void viewWillAppear(bool animated) override;
    void doneAction(const std::shared_ptr<Object>& sender);
};

/// The screen of the named class; when no such screen can be made, one log line that says why, and a
/// placeholder. Never null.
std::shared_ptr<PSViewController> makeViewController(std::string_view className);

}  // namespace platform
