// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/foundation/Value.h"

namespace platform {

/// The phone's time. Usable from any thread.
class Clock {
  public:
    virtual ~Clock() = default;

    virtual Date now() const = 0;
    /// Real seconds until the instant is reached, 0 when it has been; empty when waiting does not bring it
    /// nearer, because the clock moves only when it is told to.
    virtual std::optional<double> secondsUntil(Date instant) const = 0;
};

}  // namespace platform
