// SPDX-License-Identifier: MIT
#include "profile/hours/QXDateRangeController.h"

#include "shell/base/LocalNotifications.h"
#include "shell/base/NotificationNames.h"
#include "shell/chrome/EditedProfile.h"

namespace quietrix {

PLATFORM_REGISTER_CLASS(QXDateRangeController)

void QXDateRangeController::loadPane() {
    if (!pane()) {
        setPane(QXDateRangePane::initWithFrame(view()->frame()));
        pane()->setPreferenceSpecifier(specifier());
        observeLocally(ProfileAppliedStateChangedNotification, *this,
                       "profileAppliedStateChanged:", &QXDateRangeController::profileAppliedStateChanged);
    }
    pane()->setDelegate(shared(this));
}

std::shared_ptr<QXProfile> QXDateRangeController::profile() const {
    const auto hours = std::dynamic_pointer_cast<QXDateRangePane>(pane());
    return hours ? hours->profile() : nullptr;
}

void QXDateRangeController::timeChanged() {
    saveProfile();
}

void QXDateRangeController::saveProfile() {
    saveEditedProfile(*this, profile(), {.newProfile = NewProfile::IsAnnounced});
}

void QXDateRangeController::profileAppliedStateChanged(const platform::Notification&) {
    const auto& row = pane()->preferenceSpecifier();
    if (row) row->setUserInfo(storedRecordOrOwn(profile()));
}

}  // namespace quietrix
