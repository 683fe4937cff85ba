// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace platform {

/// What tells one state of a file from another without reading it. Times since 1970.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modifiedNanoseconds = 0;
    std::int64_t changedNanoseconds = 0;

    bool operator==(const FileStamp&) const = default;
};

}  // namespace platform
