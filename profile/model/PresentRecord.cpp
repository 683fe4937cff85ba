// SPDX-License-Identifier: MIT
#include "profile/model/PresentRecord.h"

#include "profile/model/QXProfilesManager.h"

namespace quietrix {

std::shared_ptr<QXProfile> presentRecordOf(const std::shared_ptr<QXProfile>& profile) {
    if (!profile) return nullptr;
    auto stored =
        QXProfilesManager::sharedManager()->profileByIdentifier_shouldReload(profile->identifier(), false);
    return stored ? stored : profile;
}

}  // namespace quietrix
