// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Clock.h"

namespace device {

/// The machine's own time.
class SystemClock : public platform::Clock {
  public:
    platform::Date now() const override;
    std::optional<double> secondsUntil(platform::Date instant) const override;
};

}  // namespace device
