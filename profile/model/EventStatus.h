// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quietrix {

/// The user's answers to an event that a profile can ask for, by the keys of their texts (which are the
/// English ones), in the order of the stored values.
inline constexpr std::array<std::string_view, 4> eventStatusNames{"All", "Accepted", "Tentative",
                                                                  "Declined/Cancelled"};

/// Empty for a value that no status has.
inline std::optional<std::string_view> eventStatusName(std::int64_t status) {
    const auto place = static_cast<std::uint64_t>(status);
    return place < eventStatusNames.size() ? std::optional(eventStatusNames.at(place)) : std::nullopt;
}

}  // namespace quietrix
