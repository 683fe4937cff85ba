// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "device/Descriptor.h"
#include "platform/foundation/Value.h"

namespace settings {

/// One end of the line between the watcher and the program that it has started: objects of JSON, a line each,
/// over a socket that nobody else has. Main thread.
class ControlLine {
  public:
    struct Ends {
        device::Descriptor here;
        device::Descriptor there;
    };
    /// Two ends of a new line, neither kept open by other programs; empty when the system has none left.
    static std::optional<Ends> make();

    explicit ControlLine(device::Descriptor socket);

    int descriptor() const { return socket_.get(); }
    /// Waits while the other end is slow in taking it; false when that is gone, or takes nothing any more.
    bool send(const platform::Dictionary& message);
    /// What has come by now, without waiting. What is no object is passed over.
    std::vector<platform::Value> receive();
    /// Waits for the next message; nothing when none will come.
    std::optional<platform::Value> wait();
    /// Whether the other end is gone, once that was seen.
    bool hasEnded() const { return hasEnded_; }

  private:
    void readSome(int flags);
    std::optional<platform::Value> takeLine();

    device::Descriptor socket_;
    std::string received_;
    bool hasEnded_ = false;
};

}  // namespace settings
