// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "platform/foundation/FileSystem.h"

namespace platform {

/// The phone's file manager: the installed device's file system, with every change written to the journal
/// ("write", "removeFile"). Without a file system every operation fails. Usable from any thread.
class FileManager {
  public:
    static FileManager& defaultManager();

    Result<Data> contentsAtPath(std::string_view path) const;
    Result<void> writeData_toFile(const Data& data, std::string_view path, Write how);
    bool fileExistsAtPath(std::string_view path) const;
    bool directoryExistsAtPath(std::string_view path) const;
    Result<std::optional<FileStamp>> stampAtPath(std::string_view path) const;
    Result<void> removeItemAtPath(std::string_view path);
    Result<void> createDirectoryAtPath(std::string_view path);
    Result<std::vector<std::string>> contentsOfDirectoryAtPath(std::string_view path) const;
    Result<std::unique_ptr<FileLock>> lockExclusively(std::string_view path, double seconds);
    Result<std::unique_ptr<FileHistory>> openHistory(std::string_view path, Missing missing);
};

/// Joins two path pieces with exactly one slash between them.
std::string stringByAppendingPathComponent(std::string_view path, std::string_view component);

}  // namespace platform
