// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/preferences/PSSpecifier.h"
#include "platform/uikit/UIViewController.h"

namespace platform {

/// A screen that a row of another screen opened.
class PSViewController : public UIViewController {
    PLATFORM_CLASS(PSViewController, UIViewController)

  public:
    /// The row that opened this screen; null for a screen opened otherwise.
    const std::shared_ptr<PSSpecifier>& specifier() const { return specifier_; }
    /// Takes the row's name as the title, when there is one.
    virtual void setSpecifier(std::shared_ptr<PSSpecifier> specifier);

  private:
    std::shared_ptr<PSSpecifier> specifier_;
};

}  // namespace platform
