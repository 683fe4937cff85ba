// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>

#include "device/HostFile.h"

namespace device {

/// A directory of this program's own among the temporary ones, which goes with this object. It is locked for
/// as long as this lives, also in processes that were forked off: what a killed program has left has no lock,
/// and goes when the next folder is made.
class TemporaryFolder {
  public:
    static host::Explained<TemporaryFolder> create();
    TemporaryFolder(TemporaryFolder&& other) noexcept
        : path_(std::exchange(other.path_, {})), lock_(std::move(other.lock_)) {}
    TemporaryFolder& operator=(TemporaryFolder&&) = delete;
    ~TemporaryFolder();

    /// Its host path.
    const std::string& path() const { return path_; }

  private:
    TemporaryFolder(std::string path, Descriptor lock) : path_(std::move(path)), lock_(std::move(lock)) {}

    std::string path_;
    /// None on a file system without locks.
    Descriptor lock_;
};

}  // namespace device
