// SPDX-License-Identifier: MIT
#include "profile/hours/QXDateRangeController.h"

#include "profile/model/PresentRecord.h"
#include "profile/model/QXProfilesManager.h"
#include "shell/base/ErrorAlert.h"
#include "shell/base/NotificationNames.h"

namespace quietrix {

using platform::NotificationCenter;

PLATFORM_REGISTER_CLASS(QXDateRangeController)

void QXDateRangeController::loadPane() {
    if (!pane()) {
        setPane(QXDateRangePane::initWithFrame(view()->frame()));
        pane()->setPreferenceSpecifier(specifier());
        NotificationCenter::defaultCenter().addObserver_selector_name_object(
            shared(this),
            platform::method("profileAppliedStateChanged:",
                             &QXDateRangeController::profileAppliedStateChanged),
            ProfileAppliedStateChangedNotification, nullptr);
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
    const auto record = profile();
    if (record && record->isNewProfile()) {
        NotificationCenter::defaultCenter().postNotificationName_object_userInfo(
            ProfileDataUpdateNotification, nullptr, nullptr);
        return;
    }
    QXProfilesManager::sharedManager()->updateProfile_success_failure(
        record, nullptr, [self = shared(this)](const platform::Error& error) { qx_showError(*self, error); });
}

void QXDateRangeController::profileAppliedStateChanged(const platform::Notification&) {
    const auto& row = pane()->preferenceSpecifier();
    if (!row) return;
    row->setUserInfo(presentRecordOf(profile()));
}

}  // namespace quietrix
