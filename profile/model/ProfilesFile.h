// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/BinaryList.h"

namespace quietrix {

/// What the profiles file holds; its Changes are what it will hold after some. It knows bytes, not paths:
/// reading and writing them is the store's business. Immutable; usable from any thread.
///
/// The file is the dictionary {"format": 1, "profiles": […]}. What this class does not know it keeps and
/// writes back as it is: keys beside those two, keys of a profile that a record does not have, and entries of
/// "profiles" that are no profiles (no dictionary, or one without an identifier, or with one that an earlier
/// entry has).
class ProfilesFile {
  public:
    /// A profile of this very state of the file.
    using Profile = platform::BinaryList::Object;
    class Changes;

    /// The file that is not there: no profiles.
    ProfilesFile() = default;
    /// Reads every form of property list. The error is a sentence about what is wrong with the bytes.
    /// Takes time in proportion to the bytes. A file of more than `largeSize` bytes takes three times its
    /// size in memory at most while it is read, the bytes themselves included; one that would take more is
    /// refused.
    static platform::Result<ProfilesFile> parse(platform::Data bytes);
    static constexpr std::size_t largeSize = platform::BinaryList::largeSize;

    /// Empty for the file that is not there.
    const platform::Data& bytes() const;
    /// In the file's order.
    std::vector<Profile> profiles() const;
    /// How many entries of "profiles" are none.
    std::size_t foreignEntries() const { return foreignEntries_; }
    std::optional<Profile> find(std::string_view identifier) const;
    std::string identifier(Profile profile) const;
    platform::Dictionary values(Profile profile) const;

  private:
    class Draft;

    static constexpr std::string_view formatKey = "format";
    static constexpr std::string_view profilesKey = "profiles";
    static constexpr std::int64_t currentFormat = 1;

    /// An element of "profiles", and whether it is one. In one number: a large file may have many.
    class Entry {
      public:
        Entry(Profile object, bool isProfile) : packed_(object << 1 | (isProfile ? 1U : 0U)) {}
        Profile object() const { return packed_ >> 1; }
        bool isProfile() const { return (packed_ & 1U) != 0; }

      private:
        Profile packed_;
    };
    /// Where a profile is, kept in the order of the hashes of the identifiers.
    struct Place {
        std::uint32_t hash;
        Profile object;
    };
    /// An entry with an identifier, the first for its object.
    struct Candidate {
        Place place;
        /// The identifier's object: many entries may share it.
        platform::BinaryList::Object name;
        std::uint32_t position;
    };

    static std::uint32_t hashOf(std::string_view identifier);
    platform::Result<void> readEntries();
    std::vector<Candidate> readCandidates(platform::BinaryList::Object profiles);
    void admit(std::vector<Candidate> candidates);
    void admitFirstOfEachName(std::span<const Candidate> ofOneHash);

    std::optional<platform::BinaryList> list_;
    std::vector<Entry> entries_;
    std::vector<Place> places_;
    std::size_t foreignEntries_ = 0;
    /// An estimate, never too low for long, of what the file needs without the objects that changes left
    /// behind.
    std::uint64_t liveBytes_ = 0;
    /// The file's last objects that the next change makes anew, known only for a file that was made here: the
    /// array of the profiles and the root.
    platform::BinaryList::Object tail_ = 0;
};

}  // namespace quietrix
