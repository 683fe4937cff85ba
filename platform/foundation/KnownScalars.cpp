// SPDX-License-Identifier: MIT
#include "platform/foundation/KnownScalars.h"

#include <algorithm>

namespace platform {

std::optional<KnownScalars::Object> KnownScalars::find(const BinaryListScalar& scalar, Object next) {
    if (2 * (entries_.size() + 1) > places_.size()) grow();
    const auto hash = static_cast<std::uint32_t>(scalar.hash());
    const std::size_t mask = places_.size() - 1;
    std::size_t at = hash & mask;
    for (; places_[at] != 0; at = (at + 1) & mask) {
        const Entry& entry = entries_[places_[at] - 1];
        if (entry.hash == hash && entry.scalar == scalar) return entry.object;
    }
    entries_.push_back({scalar, hash, next});
    places_[at] = static_cast<std::uint32_t>(entries_.size());
    return std::nullopt;
}

void KnownScalars::grow() {
    constexpr std::size_t atFirst = 64;
    places_.assign(std::max(atFirst, 2 * places_.size()), 0);
    const std::size_t mask = places_.size() - 1;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        std::size_t at = entries_[i].hash & mask;
        while (places_[at] != 0) at = (at + 1) & mask;
        places_[at] = static_cast<std::uint32_t>(i + 1);
    }
}

}  // namespace platform
