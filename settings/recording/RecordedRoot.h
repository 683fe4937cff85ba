// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <utility>

#include "device/TemporaryFolder.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace settings {

using RootFiles = std::map<std::string, platform::Data>;

/// The files of a root, by their phone paths; not what links lead to, and not what only processes have there.
/// Host path. The error names what cannot be read; so it does for a root of more than 64 MiB.
platform::Result<RootFiles> filesOfRoot(const std::string& rootDirectory);

/// A root with these files, for as long as this lives: a directory of its own among the temporary ones.
class TemporaryRoot {
  public:
    static platform::Result<TemporaryRoot> create(const RootFiles& files);

    /// Its host path.
    const std::string& path() const { return folder_.path(); }

  private:
    explicit TemporaryRoot(device::TemporaryFolder folder) : folder_(std::move(folder)) {}

    device::TemporaryFolder folder_;
};

}  // namespace settings
