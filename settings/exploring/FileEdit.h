// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/foundation/Value.h"

namespace settings {

/// What another process may do to a file in which a bundle keeps something.
enum class FileEditKind {
    Remove,
    Empty,
    /// Some of its end is missing.
    CutShort,
    /// One bit is another.
    FlipBit,
    /// Bytes that are no property list.
    Junk,
    /// A property list that is not a dictionary.
    NoDictionary,
    /// A key less, somewhere within.
    ForgetKey,
    /// A value of another kind, somewhere within.
    OtherKind,
    /// An entry of a list is there twice, or the list is empty.
    Repeat,
    /// The same, in the other format.
    OtherFormat,
};
inline constexpr std::size_t fileEditKinds = 10;

struct FileEdit {
    FileEditKind kind = FileEditKind::Remove;
    /// What is left open by the kind follows from this.
    std::uint64_t seed = 0;

    bool operator==(const FileEdit&) const = default;
};

/// "cut short", "removed", …
std::string_view nameOf(FileEditKind kind);
/// The file's bytes afterwards; empty for none. Follows from the arguments alone. Any bytes may come: an edit
/// that cannot be done to them leaves them as they are.
std::optional<platform::Data> edited(const std::optional<platform::Data>& bytes, const FileEdit& edit);

}  // namespace settings
