// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "platform/foundation/Value.h"

namespace bench {

/// The identifier of the profile of that number, from 0.
std::string profileIdentifier(std::int64_t number);

/// What a profiles file of so many profiles holds. Each profile has all its keys, three calendars and two
/// networks, as those of somebody who uses everything.
platform::Value manyProfiles(std::int64_t count);

/// The same as a binary property list.
platform::Data manyProfilesFile(std::int64_t count);

}  // namespace bench
