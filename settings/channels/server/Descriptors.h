// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace settings::server {

/// Lets this process hold as many descriptors at once, as far as the machine allows: raises its soft limit,
/// never lowers it. Gives how many it may hold now.
std::size_t allowDescriptors(std::size_t wanted);

}  // namespace settings::server
