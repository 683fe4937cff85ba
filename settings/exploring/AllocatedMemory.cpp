// SPDX-License-Identifier: MIT
#include "settings/exploring/AllocatedMemory.h"

#include <malloc.h>

#include <cstddef>

// There when a sanitizer's allocator has taken the place of the library's, which then counts nothing.
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();

namespace settings {

std::int64_t allocatedBytes() {
    if (__sanitizer_get_current_allocated_bytes != nullptr)
        return static_cast<std::int64_t>(__sanitizer_get_current_allocated_bytes());
    const auto memory = mallinfo2();
    return static_cast<std::int64_t>(memory.uordblks + memory.hblkhd);
}

}  // namespace settings
