// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "platform/eventkit/EKCalendar.h"

namespace platform {

/// The phone's calendars, from the installed device. Main thread.
class EKEventStore : public Object {
    PLATFORM_CLASS(EKEventStore, Object)

  public:
    /// As they are now, in the device's order; none on a device without calendars.
    std::vector<std::shared_ptr<EKCalendar>> calendars() const;
};

}  // namespace platform
