// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/preferences/PSViewController.h"
#include "profile/model/QXProfile.h"

namespace quietrix {

/// What the pickers share: each is opened by a row whose user info is a dictionary with the profile under
/// "profile", and saves an existing profile with each choice. Main thread.

/// Whose condition the screen edits; null when the row does not say, or nobody opened it.
std::shared_ptr<QXProfile> profileOfScreen(const platform::PSViewController& screen);

/// Saves the screen's profile unless it is a new one, which the editor adds later. A failure is shown on the
/// screen, if it is still there.
void saveExistingProfile(platform::PSViewController& screen);

}  // namespace quietrix
