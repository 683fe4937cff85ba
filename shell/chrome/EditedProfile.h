// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "platform/preferences/PSViewController.h"
#include "profile/model/QXProfile.h"
#include "shell/base/ErrorAlert.h"

namespace quietrix {

/// The profile that a screen edits: which one it is, how a change of it is saved, and what the store has of
/// it. Main thread.

/// The one that the row's user info is; null when it is none, or there is no row.
std::shared_ptr<QXProfile> profileOfRow(const std::shared_ptr<platform::PSSpecifier>& row);

/// The one under "profile" in the user info of the row that opened the screen; null when the row does not
/// say, or nobody opened it.
std::shared_ptr<QXProfile> profileOfScreen(const platform::PSViewController& screen);

/// The store's present record of the profile; the profile itself where the store has none of it, because it
/// is new or was deleted elsewhere: what was set on a screen stays with it. Null for null.
std::shared_ptr<QXProfile> storedRecordOrOwn(const std::shared_ptr<QXProfile>& profile);

/// A new profile is not saved, since the editor adds it as a whole; some screens tell the editor that it has
/// changed.
enum class NewProfile { IsLeft, IsAnnounced };

/// How one screen's saving differs from another's.
struct Saving {
    NewProfile newProfile = NewProfile::IsLeft;
    Screen waiting = Screen::Kept;
    std::function<void()> success = nullptr;
};

/// Saves a change of the profile, or leaves a new one as `saving` says. The store's failure is shown on the
/// screen, that of a null profile too.
void saveEditedProfile(platform::PSViewController& screen, const std::shared_ptr<QXProfile>& profile,
                       Saving saving);

}  // namespace quietrix
