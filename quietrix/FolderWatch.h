// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "device/Descriptor.h"

namespace console {

/// Tells when something in a directory of the host may have changed. The directory may come, go and be
/// replaced. Main thread, whose run loop it needs.
class FolderWatch {
  public:
    FolderWatch(std::string directory, std::function<void()> changed);
    ~FolderWatch();
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    /// Has what is at the path by now watched, if it is there and can be. Nothing tells that a directory has
    /// come, so this is called from time to time.
    void renew();

  private:
    void drain() const;

    std::string directory_;
    device::Descriptor events_;
};

}  // namespace console
