// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "device/DatagramTransport.h"
#include "platform/foundation/NotificationTransport.h"

namespace settings {

/// System-wide notifications in an order that does not depend on the machine: what this process posts comes
/// back to it at once, and what others post is held until it is asked for.
class HeldNotifications : public platform::NotificationTransport {
  public:
    using Listener = std::function<void(const std::string& name)>;

    /// `others` carries names to and from the phone's other processes, without this process's own coming
    /// back; null where there are none.
    explicit HeldNotifications(std::unique_ptr<device::DatagramTransport> others)
        : others_(std::move(others)) {}

    /// The receiver is called on the thread that posts or delivers.
    platform::Result<void> start(Receiver receiver) override;
    void post(const std::string& name) override;
    bool hasPending() const override { return false; }

    /// Whether others have posted something that is still held, and what, in the order of arrival.
    bool holdsAny() const;
    std::vector<std::string> takeHeld();
    /// As when another process has posted the name to this one alone.
    void deliver(const std::string& name);
    /// Hears each name that this process gets, before its receiver does. Set before start().
    void setListener(Listener listener) { listener_ = std::move(listener); }

  private:
    std::unique_ptr<device::DatagramTransport> others_;
    Receiver receiver_;
    Listener listener_;
    mutable std::mutex mutex_;
    std::vector<std::string> held_;
};

}  // namespace settings
