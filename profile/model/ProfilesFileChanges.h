// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "profile/model/ProfilesFile.h"

namespace quietrix {

/// Changes of a profiles file, each made to what those before it have left, and the file's next state with
/// all of them. Making it costs what copying the file costs, and each change what its profile costs, however
/// many they are. The file must outlive them.
class ProfilesFile::Changes {
  public:
    explicit Changes(const ProfilesFile& base) : base_(base) {}

    bool has(std::string_view identifier) const;
    /// Of the profile of that identifier; empty when there is none.
    std::optional<platform::Dictionary> values(std::string_view identifier) const;

    /// One profile more, at the end. The caller has made sure that its identifier is free.
    void add(platform::Dictionary values);
    /// The values in place of the profile's own; keys that a record does not have stay. There must be one.
    void update(std::string_view identifier, platform::Dictionary values);
    /// The file without the profile, and without other entries under its identifier: it would come back as
    /// one of those. There must be one.
    void remove(std::string_view identifier);

    /// Fails for what property lists cannot hold.
    platform::Result<ProfilesFile> finish() const;

  private:
    friend class Draft;

    /// One of the file's that was not removed.
    std::optional<Profile> old(std::string_view identifier) const;

    const ProfilesFile& base_;
    /// In the order of the file's objects, so that equal changes give equal bytes.
    std::map<Profile, platform::Dictionary> updated_;
    std::set<Profile> removed_;
    std::set<std::string, std::less<>> removedNames_;
    /// An empty one was removed again.
    std::vector<platform::Dictionary> added_;
    std::map<std::string, std::size_t, std::less<>> addedAt_;
};

}  // namespace quietrix
