// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "platform/foundation/Error.h"

namespace platform {

/// Carries the names of system-wide notifications between all processes of the phone.
class NotificationTransport {
  public:
    using Receiver = std::function<void(const std::string& name)>;

    virtual ~NotificationTransport() = default;

    /// Starts receiving. The receiver is called on a thread of the transport's own, for names posted by other
    /// processes and by this one; equal names that were not delivered yet may come as one. Called once.
    virtual Result<void> start(Receiver receiver) = 0;
    /// Sends the name to every living process, this one included. Never waits for a receiver. Any thread.
    virtual void post(const std::string& name) = 0;
    /// Whether something has arrived that the receiver was not yet called for.
    virtual bool hasPending() const = 0;
};

}  // namespace platform
