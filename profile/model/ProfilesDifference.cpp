// SPDX-License-Identifier: MIT
#include "profile/model/ProfilesDifference.h"

#include <utility>

namespace quietrix {

namespace {

using platform::Dictionary;

ProfilesDifference::Profile named(const ProfilesFile& file, ProfilesFile::Profile profile,
                                  const Dictionary& values) {
    const auto title = values.find("title");
    return {file.identifier(profile), title == values.end() ? "" : title->second.stringOr()};
}

/// Both are sorted by their keys.
std::vector<ProfilesDifference::Value> differingValues(const Dictionary& older, const Dictionary& newer) {
    std::vector<ProfilesDifference::Value> values;
    auto one = older.begin();
    auto other = newer.begin();
    while (one != older.end() || other != newer.end()) {
        const bool isGone = other == newer.end() || (one != older.end() && one->first < other->first);
        const bool isNew = one == older.end() || (other != newer.end() && other->first < one->first);
        if (isGone) {
            values.push_back({one->first, one->second, {}});
        } else if (isNew) {
            values.push_back({other->first, {}, other->second});
        } else if (one->second != other->second) {
            values.push_back({one->first, one->second, other->second});
        }
        if (!isNew) ++one;
        if (!isGone) ++other;
    }
    return values;
}

}  // namespace

ProfilesDifference ProfilesDifference::between(const ProfilesFile& older, const ProfilesFile& newer) {
    ProfilesDifference difference;
    for (const ProfilesFile::Profile profile : newer.profiles()) {
        const Dictionary values = newer.values(profile);
        Profile now = named(newer, profile, values);
        const auto before = older.find(now.identifier);
        if (!before) {
            difference.added.push_back(std::move(now));
            continue;
        }
        now.values = differingValues(older.values(*before), values);
        if (now.values.empty()) {
            ++difference.unchanged;
        } else {
            difference.changed.push_back(std::move(now));
        }
    }
    for (const ProfilesFile::Profile profile : older.profiles()) {
        Profile before = named(older, profile, older.values(profile));
        if (!newer.find(before.identifier)) difference.removed.push_back(std::move(before));
    }
    return difference;
}

}  // namespace quietrix
