// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/foundation/BinaryListBuilder.h"
#include "profile/model/ProfilesFileChanges.h"

namespace quietrix {

/// The next state of a profiles file in the making. Where it can, it continues the old state's bytes: what
/// the changes leave behind stays in the file until it is more than half of what is needed, then everything
/// is written anew. A change so costs what copying the bytes costs, whatever the number of profiles.
class ProfilesFile::Draft {
  public:
    explicit Draft(const ProfilesFile& base);

    /// Whether the state after this one may continue its bytes.
    static bool canContinue(const ProfilesFile& base);
    platform::Result<ProfilesFile> finish(const Changes& changes) &&;

  private:
    using Object = platform::BinaryList::Object;
    using Pair = platform::BinaryList::Pair;
    /// A key of the profile that another is made after. What it has in common with that one is shared.
    struct Part {
        std::string name;
        Pair objects;
        /// Of a profile that was made here; one of the old list is looked up when it is needed.
        platform::Value value = {};
    };

    /// The object of the list in the making that stands for one of the old list.
    Object keep(Object old);
    std::vector<Part> oldParts(Profile profile) const;
    /// The profile with the values in place of its own.
    platform::Result<Object> updated(Profile previous, platform::Dictionary values);
    platform::Result<Object> added(platform::Dictionary values);
    /// Those of the values that no part has yet.
    platform::Result<void> appendRest(const platform::Dictionary& values, std::vector<Part>& parts);
    Object addParts(const std::vector<Part>& parts);

    bool carriesRemovedName(Object entry, const Changes& changes);
    platform::Result<void> fillOld(ProfilesFile& next, const Changes& changes);
    platform::Result<void> fillAdded(ProfilesFile& next, const Changes& changes);
    /// The root's entries; the one of the profiles has no value yet.
    struct Root {
        std::vector<Pair> pairs;
        std::size_t profilesAt;
    };
    platform::Result<Root> root();
    std::uint64_t bytesOf(Object old) const;

    const ProfilesFile& base_;
    platform::BinaryListBuilder builder_;
    /// Empty while the old list is continued: every object is then its own copy.
    std::optional<platform::BinaryListBuilder::Copies> copies_;
    /// The profile that was added last, here or before.
    std::vector<Part> last_;
    bool isLastOld_ = true;
    /// Entries and texts that come again and again are looked at once.
    std::unordered_map<Object, bool> carriesName_;
    std::unordered_map<Object, bool> isName_;
    /// What the changes leave behind.
    std::uint64_t left_ = 0;
};

}  // namespace quietrix
