// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/FileStamp.h"
#include "platform/foundation/Value.h"

namespace platform {

/// States that one file had, each under a name of its own in a folder beside it. To keep a state copies
/// nothing: it is a second name of the same file, which lives on when the file is replaced or removed. So a
/// program that writes into the file in place changes what was last kept with it; whoever keeps a state has
/// to be able to tell.
///
/// The names are the user's to choose; one with a slash, "." and ".." are refused. Every error is a sentence
/// that names the file and the reason. Usable from any thread.
class FileHistory {
  public:
    enum class Kept { Yes, NameIsTaken };

    virtual ~FileHistory() = default;

    /// Of everything in the folder, sorted by their bytes.
    virtual Result<std::vector<std::string>> names() const = 0;
    /// Of what has the name itself: links in the folder are not followed. An error too where nothing has it.
    virtual Result<FileStamp> stamp(const std::string& name) const = 0;
    /// The whole of a regular file; links are not followed.
    virtual Result<Data> read(const std::string& name) const = 0;
    /// Gives the file as it is at this instant the name too. The file's stamp changes by that (it has one
    /// name more). Nothing is synced: after a power failure the name may be missing. Fails where the folder
    /// is on another file system than the file, or the disk has no room for a name.
    virtual Result<Kept> keep(const std::string& name) = 0;
    /// Makes an empty file of that name, for a state in which there is no file.
    virtual Result<Kept> mark(const std::string& name) = 0;
    /// Removes one name; what others have of the same file stays.
    virtual Result<void> remove(const std::string& name) = 0;
};

}  // namespace platform
