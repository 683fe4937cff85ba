// SPDX-License-Identifier: MIT
#include "shell/chrome/EditedProfile.h"

#include <utility>

#include "profile/model/QXProfilesManager.h"
#include "shell/base/LocalNotifications.h"
#include "shell/base/NotificationNames.h"

namespace quietrix {

std::shared_ptr<QXProfile> profileOfRow(const std::shared_ptr<platform::PSSpecifier>& row) {
    return row ? row->userInfo().objectAs<QXProfile>() : nullptr;
}

std::shared_ptr<QXProfile> profileOfScreen(const platform::PSViewController& screen) {
    const auto& row = screen.specifier();
    return row ? row->userInfo()["profile"].objectAs<QXProfile>() : nullptr;
}

std::shared_ptr<QXProfile> storedRecordOrOwn(const std::shared_ptr<QXProfile>& profile) {
    if (!profile) return nullptr;
    auto stored =
        QXProfilesManager::sharedManager()->profileByIdentifier_shouldReload(profile->identifier(), false);
    return stored ? stored : profile;
}

void saveEditedProfile(platform::PSViewController& screen, const std::shared_ptr<QXProfile>& profile,
                       Saving saving) {
    if (profile && profile->isNewProfile()) {
        if (saving.newProfile == NewProfile::IsAnnounced) postLocally(ProfileDataUpdateNotification);
        return;
    }
    QXProfilesManager::sharedManager()->updateProfile_success_failure(profile, std::move(saving.success),
                                                                      errorShownOn(screen, saving.waiting));
}

}  // namespace quietrix
