// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/Object.h"
#include "platform/foundation/Value.h"

namespace quietrix {

/// The user's calendars, as the screens offer them. Main thread.
class QXEventManager : public platform::Object {
    PLATFORM_CLASS(QXEventManager, platform::Object)

  public:
    /// The one manager of the process.
    static std::shared_ptr<QXEventManager> sharedManager();

    /// The phone's calendars as they are now: a dictionary from a group's title (the account) to an array of
    /// its EKCalendar objects, in the phone's order. Empty, never nil, on a phone without calendars.
    platform::Value groupedCalendars() const;
};

}  // namespace quietrix
