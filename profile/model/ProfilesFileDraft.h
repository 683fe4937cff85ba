// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/foundation/BinaryListBuilder.h"
#include "profile/model/ProfilesFile.h"

namespace quietrix {

/// The next state of a profiles file in the making. Where it can, it continues the old state's bytes: what
/// the change leaves behind stays in the file until it is more than half of what is needed, then everything
/// is written anew. A change so costs what copying the bytes costs, whatever the number of profiles.
class ProfilesFile::Draft {
  public:
    explicit Draft(const ProfilesFile& base);

    platform::Result<ProfilesFile> finish(Change change) &&;

  private:
    using Object = platform::BinaryList::Object;

    static bool canContinue(const ProfilesFile& base);
    /// The object of the list in the making that stands for one of the old list.
    Object keep(Object old);
    platform::Result<Object> record(const Change& change);
    /// The root's entries; the one of the profiles has no value yet.
    struct Root {
        std::vector<platform::BinaryList::Pair> pairs;
        std::size_t profilesAt;
    };
    platform::Result<Root> root();
    std::uint64_t bytesOf(Object old) const;

    const ProfilesFile& base_;
    platform::BinaryListBuilder builder_;
    /// Empty while the old list is continued: every object is then its own copy.
    std::optional<platform::BinaryListBuilder::Copies> copies_;
    /// What this change leaves behind.
    std::uint64_t left_ = 0;
};

}  // namespace quietrix
