// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/PSEditingPane.h"
#include "platform/preferences/PSViewController.h"

namespace platform {

/// A screen that holds one editing pane.
class PSDetailController : public PSViewController {
    PLATFORM_CLASS(PSDetailController, PSViewController)

  public:
    const std::shared_ptr<PSEditingPane>& pane() const { return pane_; }
    /// Replaces the pane in the screen's view, which it fills. Null takes the pane away.
    void setPane(std::shared_ptr<PSEditingPane> pane);
    /// Makes the pane; called whenever the screen appears. The base makes the row's edit-pane class, if it
    /// names one and there is no pane yet; a class that is no pane is logged.
    virtual void loadPane();
    void viewWillAppear(bool animated) override;

  private:
    std::shared_ptr<PSEditingPane> pane_;
};

}  // namespace platform
