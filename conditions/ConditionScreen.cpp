// SPDX-License-Identifier: MIT
#include "conditions/ConditionScreen.h"

#include "profile/model/QXProfilesManager.h"
#include "shell/base/ErrorAlert.h"

namespace quietrix {

using platform::PSViewController;

std::shared_ptr<QXProfile> profileOfScreen(const PSViewController& screen) {
    const auto& row = screen.specifier();
    return row ? row->userInfo()["profile"].objectAs<QXProfile>() : nullptr;
}

void saveExistingProfile(PSViewController& screen) {
    const auto profile = profileOfScreen(screen);
    if (profile && profile->isNewProfile()) return;
    QXProfilesManager::sharedManager()->updateProfile_success_failure(
        profile, nullptr, [weakScreen = screen.weak(&screen)](const platform::Error& error) {
            if (const auto shown = weakScreen.lock()) qx_showError(*shown, error);
        });
}

}  // namespace quietrix
