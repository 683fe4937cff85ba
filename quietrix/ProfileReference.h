// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "profile/model/QXProfilesManager.h"
#include "quietrix/Outcome.h"

namespace console {

using Record = std::shared_ptr<quietrix::QXProfile>;

/// The profile that the text names: the one with that identifier, else the one whose identifier begins with
/// it or whose title it is, if it is just one. The refusal has the candidates.
std::expected<Record, Refusal> profileNamed(std::string_view text, const std::vector<Record>& present);
/// The same for several, each once, in the order of their naming.
std::expected<std::vector<Record>, Refusal> profilesNamed(const std::vector<std::string>& texts,
                                                          const std::vector<Record>& present);

/// The beginning of each profile's identifier that names it and no other, at least eight characters where
/// there are as many; in the order of the profiles.
std::vector<std::string> shortIdentifiers(const std::vector<Record>& profiles);

}  // namespace console
