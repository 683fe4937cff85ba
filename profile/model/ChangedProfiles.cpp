// SPDX-License-Identifier: MIT
#include "profile/model/ChangedProfiles.h"

#include <utility>

namespace quietrix {

void ChangedProfiles::add(Entry entry) {
    const std::scoped_lock lock(mutex_);
    entries_.push_back(std::move(entry));
}

std::vector<ChangedProfiles::Entry> ChangedProfiles::take() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(entries_, {});
}

}  // namespace quietrix
