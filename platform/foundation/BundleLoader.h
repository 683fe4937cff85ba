// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace platform {

/// Opens the code of bundles with the dynamic loader, each once. Nothing is ever closed: classes, observers
/// and objects made of a bundle's classes outlive every screen of it. Main thread only.
class BundleLoader {
  public:
    static BundleLoader& shared();

    /// Bundle::load(), for the bundle at the phone's path with that Info list.
    Result<void> load(const std::string& bundlePath, const Dictionary& info);

  private:
    Result<void> open(const std::string& bundlePath, const std::string& hostPath);

    std::map<std::string, Result<void>> opened_;  // what became of the code at that resolved path of the host
};

}  // namespace platform
