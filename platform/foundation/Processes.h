// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace platform {

/// The phone's processes, as far as an application may touch them. Main thread.
class Processes {
  public:
    virtual ~Processes() = default;

    /// Ends the phone's process of that name; false when there is none. Never reaches a process of the
    /// machine that merely bears the name.
    virtual bool killProcessByName(std::string_view name) = 0;
};

}  // namespace platform
