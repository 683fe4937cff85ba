// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/foundation/FileSystem.h"

namespace settings {

/// Tells which of some files somebody else has changed. Phone paths. Main thread.
class FileWatch {
  public:
    explicit FileWatch(std::shared_ptr<platform::FileSystem> files) : files_(std::move(files)) {}

    /// These are the files, from now on; those that are new among them are known as they are now.
    void setPaths(const std::vector<std::string>& paths);
    /// What is at the path, or below it, was just changed by this process.
    void noteOwnChange(std::string_view path);
    /// Those that are not as they are known to be; they are known as they are by then.
    std::vector<std::string> takeChanged();
    bool hasChanged() const;
    /// The same files for a phone whose changes are this process's own. The watch outlives them.
    std::shared_ptr<platform::FileSystem> notingFiles();

  private:
    using Stamp = std::optional<platform::FileStamp>;
    /// Empty for one that is not there or cannot be looked at.
    Stamp stampOf(const std::string& path) const;

    std::shared_ptr<platform::FileSystem> files_;
    std::map<std::string, Stamp> known_;
};

}  // namespace settings
