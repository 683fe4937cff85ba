// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "quietrix/ProfileReference.h"
#include "quietrix/Session.h"

namespace console {

/// Edits the named profiles as one change. The answer is a line for each that became another, and the
/// profiles as they are by then.
std::expected<std::vector<Record>, Refusal> editProfiles(
    Session& session, const std::vector<std::string>& names,
    const std::function<void(quietrix::QXProfile& profile)>& edit, std::string& text);

/// "Work" (1A2B3C4D), made visible.
std::string nameInWords(const quietrix::QXProfile& profile);

/// Whether what cannot be taken back may be done: it is said, and asked for on a terminal. The question ends
/// with a question mark.
std::expected<void, Refusal> confirmed(Session& session, bool isAgreed, const std::string& question);

}  // namespace console
