// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NotificationCenter.h"
#include "platform/preferences/PSDetailController.h"
#include "profile/hours/QXDateRangePane.h"

namespace quietrix {

/// The screen that the editor's row of active hours opens: a pane with the two times. Each accepted change is
/// saved at once; that of a new profile is announced to the editor instead, which adds the profile later.
/// Main thread.
class QXDateRangeController : public platform::PSDetailController, public QXDateRangePaneDelegate {
    PLATFORM_CLASS(QXDateRangeController, platform::PSDetailController)

  public:
    void loadPane() override;
    void timeChanged() override;
    void saveProfile();
    /// Takes the store's copy of the profile; what is shown follows with the next look at a row.
    void profileAppliedStateChanged(const platform::Notification& notification);

  private:
    std::shared_ptr<QXProfile> profile() const;
};

}  // namespace quietrix
