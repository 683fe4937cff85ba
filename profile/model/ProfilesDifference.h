// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/foundation/Value.h"
#include "profile/model/ProfilesFile.h"

namespace quietrix {

/// What became of the profiles between two states of the file. Their order, and what is no profile, does not
/// count.
struct ProfilesDifference {
    struct Value {
        std::string key;
        /// Nil where the profile does not have the key.
        platform::Value before;
        platform::Value after;

        bool operator==(const Value&) const = default;
    };
    struct Profile {
        std::string identifier;
        /// Its newer one, of a profile that is in both; empty where the file has none that is a text.
        std::string title;
        /// Of a changed one, those that differ, by their keys.
        std::vector<Value> values{};

        bool operator==(const Profile&) const = default;
    };

    /// In the order of the newer file, those that were removed in that of the older.
    std::vector<Profile> added{};
    std::vector<Profile> changed{};
    std::vector<Profile> removed{};
    std::size_t unchanged = 0;

    static ProfilesDifference between(const ProfilesFile& older, const ProfilesFile& newer);

    bool isEmpty() const { return added.empty() && changed.empty() && removed.empty(); }
    bool operator==(const ProfilesDifference&) const = default;
};

}  // namespace quietrix
