// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/foundation/FileSystem.h"

namespace device {

/// The phone's files in a directory of the host, the root. A phone path is taken apart by its letters alone
/// ("." and ".." resolved, and never above the root) and looked up below the root; symbolic links found there
/// are followed wherever they lead, as the link to the installed bundle does.
class RootFileSystem : public platform::FileSystem {
  public:
    /// `rootDirectory` is a host path; a relative one is taken from the present working directory. It need
    /// not exist yet: then every operation fails until it does.
    explicit RootFileSystem(const std::string& rootDirectory);

    /// The root as an absolute host path.
    const std::string& rootDirectory() const { return root_; }

    platform::Result<platform::Data> read(std::string_view path) const override;
    platform::Result<void> write(std::string_view path, const platform::Data& data,
                                 platform::Write how) override;
    bool exists(std::string_view path) const override;
    bool isDirectory(std::string_view path) const override;
    platform::Result<std::optional<platform::FileStamp>> stamp(std::string_view path) const override;
    /// Removes a directory with all that is in it; of a symbolic link only the link. The root itself stays.
    platform::Result<void> remove(std::string_view path) override;
    platform::Result<void> createDirectory(std::string_view path) override;
    platform::Result<std::vector<std::string>> list(std::string_view path) const override;
    /// Takes the PrivateLock of the file that the path leads to.
    platform::Result<std::unique_ptr<platform::FileLock>> lockExclusively(std::string_view path,
                                                                          double seconds) override;
    /// A RootFileHistory.
    platform::Result<std::unique_ptr<platform::FileHistory>> openHistory(std::string_view path,
                                                                         platform::Missing missing) override;
    /// "" for a path that is not absolute or leads out of the phone.
    std::string hostPath(std::string_view path) const override;

  private:
    platform::Result<std::string> resolve(std::string_view path) const;

    std::string root_;
};

}  // namespace device
