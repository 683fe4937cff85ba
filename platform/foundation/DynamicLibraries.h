// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace platform {

/// The phone's optional dynamic libraries, which the plug-in only probes.
class DynamicLibraries {
  public:
    virtual ~DynamicLibraries() = default;

    /// Whether the library at the phone's path can be opened. Asked anew each time.
    virtual bool canOpen(std::string_view path) const = 0;
};

}  // namespace platform
