// SPDX-License-Identifier: MIT
#include "profile/model/ProfilesFileChanges.h"

#include <utility>

#include "profile/model/ProfilesFileDraft.h"

namespace quietrix {

using platform::Dictionary;
using platform::Result;

std::optional<ProfilesFile::Profile> ProfilesFile::Changes::old(std::string_view identifier) const {
    const auto profile = base_.find(identifier);
    return profile && !removed_.contains(*profile) ? profile : std::nullopt;
}

bool ProfilesFile::Changes::has(std::string_view identifier) const {
    return addedAt_.contains(identifier) || old(identifier);
}

std::optional<Dictionary> ProfilesFile::Changes::values(std::string_view identifier) const {
    if (const auto added = addedAt_.find(identifier); added != addedAt_.end()) return added_[added->second];
    const auto profile = old(identifier);
    if (!profile) return std::nullopt;
    const auto updated = updated_.find(*profile);
    return updated == updated_.end() ? base_.values(*profile) : updated->second;
}

void ProfilesFile::Changes::add(Dictionary values) {
    addedAt_.emplace(values.at("identifier").stringOr(), added_.size());
    added_.push_back(std::move(values));
}

void ProfilesFile::Changes::update(std::string_view identifier, Dictionary values) {
    if (const auto added = addedAt_.find(identifier); added != addedAt_.end()) {
        added_[added->second] = std::move(values);
    } else if (const auto profile = old(identifier)) {
        updated_.insert_or_assign(*profile, std::move(values));
    }
}

void ProfilesFile::Changes::remove(std::string_view identifier) {
    if (const auto added = addedAt_.find(identifier); added != addedAt_.end()) {
        added_[added->second] = Dictionary();
        addedAt_.erase(added);
    } else if (const auto profile = old(identifier)) {
        updated_.erase(*profile);
        removed_.insert(*profile);
        removedNames_.emplace(identifier);
    }
}

Result<ProfilesFile> ProfilesFile::Changes::finish() const {
    auto next = Draft(base_).finish(*this);
    // Many changes may leave behind more than a file is to carry.
    if (next && !Draft::canContinue(*next)) return Draft(*next).finish(Changes(*next));
    return next;
}

}  // namespace quietrix
