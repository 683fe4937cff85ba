// SPDX-License-Identifier: MIT
#include "settings/channels/server/Descriptors.h"

#include <sys/resource.h>

#include <algorithm>

namespace settings::server {

std::size_t allowDescriptors(std::size_t wanted) {
    rlimit limit{};
    // Without an answer nothing is known to be forbidden.
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return wanted;
    if (limit.rlim_cur >= wanted) return limit.rlim_cur;
    const rlimit raised{std::min<rlim_t>(wanted, limit.rlim_max), limit.rlim_max};
    return setrlimit(RLIMIT_NOFILE, &raised) == 0 ? raised.rlim_cur : limit.rlim_cur;
}

}  // namespace settings::server
