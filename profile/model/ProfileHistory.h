// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"
#include "profile/model/ProfilesDifference.h"
#include "profile/model/ProfilesFile.h"

namespace quietrix {

/// A state that the profiles file had, and that can be gone back to. What it is called in the history's
/// folder says all of this; the bytes are looked at when they are asked for.
struct ProfileGeneration {
    /// From 1, in the order in which they were kept. It is given once: whatever has been thinned out or gone
    /// back to, the next state has the next number.
    std::uint64_t number = 0;
    /// When the file was written; in whole milliseconds. For a state without a file when that was noticed.
    platform::Date time;
    /// There was no profiles file.
    bool isAbsence = false;
    /// Of the bytes as they were kept, to tell whether they still are.
    std::uint64_t digest = 0;
    /// In the history's folder.
    std::string name;
};

/// One line of the history as people look at it.
struct ProfileHistoryEntry {
    /// Empty only for a present state that could not be kept; `problem` says why.
    std::optional<std::uint64_t> number{};
    platform::Date time;
    bool isPresent = false;
    bool isAbsence = false;
    /// What became of the profiles since the state before that is still kept and can be read. Empty where
    /// this cannot be told: for a state with a problem, and for the oldest one when others before it were
    /// thinned out.
    std::optional<ProfilesDifference> difference{};
    /// Why this cannot be gone back to: a sentence. Empty when it can.
    std::string problem{};
};

/// The states that the profiles file had, kept as links to the files that have been replaced since: after
/// each change of the store, and before one when somebody else has written the file meanwhile. The latest 50
/// stay, and the last one of each day for 30 days.
///
/// The functions work on the device's files and need no lock: a number is taken by whoever makes its link
/// first. All of them may be called from any thread, and take time in proportion to the bytes they look at.
namespace ProfileHistory {

inline constexpr std::size_t latestKept = 50;
inline constexpr int daysKept = 30;

/// Keeps the file as it is now, unless the latest generation is that already, and removes generations that
/// are no longer to be kept. `bytes` are those of the file, when the caller has just written them; otherwise
/// it is read. A file that is not there is a state too, but not the first: nothing is made for it then, and
/// nothing given. The error says why it cannot be kept.
platform::Result<std::optional<ProfileGeneration>> keep(const platform::Data* bytes = nullptr);

/// The newest first. Other files in the folder are no generations. Without a folder there are none.
platform::Result<std::vector<ProfileGeneration>> generations();

/// The one of that number. The error says which numbers there are.
platform::Result<ProfileGeneration> generationOfNumber(std::uint64_t number);

/// The bytes of a generation as they were kept; none for one without a file. It is an error when somebody has
/// written into the file in place since.
platform::Result<platform::Data> bytes(const ProfileGeneration& generation);
/// What those bytes hold. The error says too why they are no profiles file.
platform::Result<ProfilesFile> profiles(const ProfileGeneration& generation);

/// The present state first, which is kept by that if it was not yet, then the others, newest first. Empty
/// when there is neither a file nor a history of one.
platform::Result<std::vector<ProfileHistoryEntry>> entries();

/// Removes the profiles file; it can be gone back to, where its history can be had (one log line says where
/// not). The error is the file system's. Nothing is posted.
platform::Result<void> removeProfilesFile();

/// Keeps the file, and logs one line when it cannot be kept.
void keepOrLog();

}  // namespace ProfileHistory

}  // namespace quietrix
