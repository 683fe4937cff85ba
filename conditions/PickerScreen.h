// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <memory>

#include "platform/foundation/Value.h"
#include "platform/preferences/PSViewController.h"
#include "shell/base/LocalNotifications.h"
#include "shell/base/NotificationNames.h"
#include "shell/chrome/EditedProfile.h"

namespace quietrix {

/// A screen that chooses one condition of a profile: it is opened by a row whose user info is a dictionary
/// with the profile under "profile", saves each choice at once, and takes the store's record when profiles
/// have changed. The picker itself is its rows and what a choice sets. No class of its own for the phone,
/// where each picker derives from its base directly. Main thread.
template <std::derived_from<platform::PSViewController> Base>
class PickerScreen : public Base {
  public:
    void viewDidLoad() override {
        Base::viewDidLoad();
        observeLocally(ProfileAppliedStateChangedNotification, *this,
                       "profileAppliedStateChanged:", &PickerScreen::profileAppliedStateChanged);
    }
    /// The opening row holds the store's profile, or the screen's own where the store has none; the rows stay
    /// as they are.
    void profileAppliedStateChanged(const platform::Notification& /*notification*/) {
        takeStoredRecordOf(profile());
    }
    void saveProfile() { saveEditedProfile(*this, profile(), saving()); }

  protected:
    /// Null when the opening row does not say.
    std::shared_ptr<QXProfile> profile() const { return profileOfScreen(*this); }
    /// What the picker's saving does beside saving; asked for with each save.
    virtual Saving saving() { return {}; }
    /// What the opening row's user info is with the profile in it.
    virtual platform::Dictionary userInfoWith(const std::shared_ptr<QXProfile>& profile) const {
        return {{"profile", profile}};
    }
    /// Puts the store's record of the profile, or the profile itself, into the opening row.
    void takeStoredRecordOf(const std::shared_ptr<QXProfile>& profile) {
        const auto& row = this->specifier();
        if (row) row->setUserInfo(userInfoWith(storedRecordOrOwn(profile)));
    }
};

}  // namespace quietrix
