// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/Error.h"

namespace settings::server {

/// The folder in the user's runtime directory in which programs of this kind leave what others of them find:
/// its owner's only, as is what it holds.
class RuntimeFolder {
  public:
    /// Makes it if it is not there. `runtimeDirectory` is what $XDG_RUNTIME_DIR names; it and the folder must
    /// be this user's and closed to others. The error says which is not, and why.
    static platform::Result<RuntimeFolder> open(const std::string& runtimeDirectory);
    RuntimeFolder(RuntimeFolder&& other) noexcept;
    RuntimeFolder& operator=(RuntimeFolder&&) = delete;
    ~RuntimeFolder();

    /// To be used with openat() and the like; owned by this.
    int descriptor() const { return descriptor_; }
    const std::string& path() const { return path_; }

    /// What is wrong with an open file or directory that nobody else may enter, read or write; empty when it
    /// is so.
    static std::string strangenessOf(int descriptor);
    /// Stands for a root in names, since the path of one may be longer than a name. However it is written,
    /// the same directory has the same digest, made already or not.
    static std::string digestOfRoot(const std::string& rootDirectory);

  private:
    RuntimeFolder(int descriptor, std::string path) : descriptor_(descriptor), path_(std::move(path)) {}

    int descriptor_;
    std::string path_;
};

}  // namespace settings::server
