// SPDX-License-Identifier: MIT
#pragma once

#include "quietrix/Finding.h"
#include "quietrix/Session.h"

namespace console {

/// Where the phone's services have theirs from: calendars, networks, tones and mail. Nothing is made or
/// changed.
Findings sourceFindings(const Session& session, const Session::Records& profiles);

}  // namespace console
