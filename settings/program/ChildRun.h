// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <functional>

#include "platform/foundation/Error.h"

namespace settings {

/// A part of the program in a process of its own: should a bundle make it die or hang, this one goes on and
/// takes away what it has made. Main thread, before there are others.
class ChildRun {
  public:
    /// The child ends with the status that `body` returns, without what stands behind the call.
    static platform::Result<ChildRun> begin(const std::function<int()>& body);

    /// Waits for its end, and tells that as waitpid() does. It is killed once `isTooLong` says so, and when
    /// this program is asked to end while a device::Interruption lives.
    int wait(const std::function<bool()>& isTooLong = {}) const;

  private:
    explicit ChildRun(pid_t process) : process_(process) {}

    pid_t process_;
};

}  // namespace settings
