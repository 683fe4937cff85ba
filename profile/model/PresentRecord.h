// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "profile/model/QXProfile.h"

namespace quietrix {

/// The store's present record of the profile; the profile itself where the store has none of it, because it
/// is new or was deleted elsewhere: what was set on a screen stays with it. Null for null. Main thread.
std::shared_ptr<QXProfile> presentRecordOf(const std::shared_ptr<QXProfile>& profile);

}  // namespace quietrix
