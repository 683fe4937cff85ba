// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/FileHistory.h"
#include "platform/foundation/FileStamp.h"
#include "platform/foundation/Value.h"

namespace platform {

enum class Write { InPlace, Atomically };
/// What becomes of a folder that is not there.
enum class Missing { Leave, Make };

/// An exclusive lock that is held as long as this object lives, also against other processes.
class FileLock {
  public:
    virtual ~FileLock() = default;
};

/// The phone's file system. All paths are the phone's absolute paths ("/var/mobile/…"); what lies behind them
/// is the device's business. A path that is not absolute, or that leads out of the phone, is an error. Every
/// error names the phone's path and the reason. Usable from any thread.
class FileSystem {
  public:
    virtual ~FileSystem() = default;

    virtual Result<Data> read(std::string_view path) const = 0;
    /// InPlace writes the bytes over those of the file itself, then cuts it to their length and syncs it: it
    /// is never empty or cut meanwhile, and writers in place exclude each other, and whoever holds the file's
    /// lock. Atomically writes a temporary file beside it, syncs it, renames it over the old one and syncs
    /// the directory: killed at any instant, the path holds the old or the new bytes whole. A symbolic link
    /// stays one; its target is what is written. What is made new is for its owner only; a file that is
    /// replaced keeps its mode.
    virtual Result<void> write(std::string_view path, const Data& data, Write how) = 0;
    /// False too for what cannot be looked at; who has to tell the two apart asks for the stamp.
    virtual bool exists(std::string_view path) const = 0;
    virtual bool isDirectory(std::string_view path) const = 0;
    /// Empty when nothing is there: no such name, or one below something that is no directory. What cannot be
    /// looked at (a directory without search permission, links that lead in a circle, a failing disk) is an
    /// error, as a file may well be there. Follows symbolic links.
    virtual Result<std::optional<FileStamp>> stamp(std::string_view path) const = 0;
    virtual Result<void> remove(std::string_view path) = 0;
    /// Creates the directory and those above it, for their owner only; one that exists is a success.
    virtual Result<void> createDirectory(std::string_view path) = 0;
    /// The names in a directory, sorted by their bytes.
    virtual Result<std::vector<std::string>> list(std::string_view path) const = 0;
    /// Locks what the path names (through a lock file of the link's target that nobody else can open, and
    /// that may stay behind), waiting `seconds` of real time at most. The error says who holds it.
    virtual Result<std::unique_ptr<FileLock>> lockExclusively(std::string_view path, double seconds) = 0;
    /// The states of the file that are kept, in a folder beside the path (beside the link where that is one),
    /// for whoever may read the file. A missing folder is made, or, with Missing::Leave, gives null. One that
    /// is a link or somebody else's is an error that names it.
    virtual Result<std::unique_ptr<FileHistory>> openHistory(std::string_view path, Missing missing) = 0;
    /// Where the path really is, for opening code with the dynamic loader.
    virtual std::string hostPath(std::string_view path) const = 0;
};

}  // namespace platform
