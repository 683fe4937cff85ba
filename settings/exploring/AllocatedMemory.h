// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace settings {

/// The bytes that this process has allocated and not freed, as its allocator counts them. Unlike the resident
/// size it does not depend on what the allocator keeps. Any thread.
std::int64_t allocatedBytes();

}  // namespace settings
