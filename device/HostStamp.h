// SPDX-License-Identifier: MIT
#pragma once

#include <sys/stat.h>

#include "platform/foundation/FileStamp.h"

namespace device::host {

inline platform::FileStamp stampOf(const struct stat& status) {
    const auto nanoseconds = [](const timespec& time) {
        return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
    };
    return {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
            nanoseconds(status.st_ctim)};
}

}  // namespace device::host
