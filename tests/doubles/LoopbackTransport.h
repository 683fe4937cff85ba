// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/NotificationTransport.h"

namespace doubles {

/// A transport on which this process is alone: what it posts comes back to it at once, on the posting thread.
class LoopbackTransport : public platform::NotificationTransport {
  public:
    platform::Result<void> start(Receiver receiver) override {
        if (!startFailure.empty()) return platform::failure(startFailure);
        const std::lock_guard lock(mutex_);
        receiver_ = std::move(receiver);
        return {};
    }
    void post(const std::string& name) override {
        {
            const std::lock_guard lock(mutex_);
            posted_.push_back(name);
        }
        deliver(name);
    }
    bool hasPending() const override { return false; }

    /// As if another process had posted the name.
    void deliver(const std::string& name) {
        Receiver receiver;
        {
            const std::lock_guard lock(mutex_);
            receiver = receiver_;
        }
        if (receiver) receiver(name);
    }
    /// What this process posted since the last call, in order.
    std::vector<std::string> takePosted() {
        const std::lock_guard lock(mutex_);
        return std::exchange(posted_, {});
    }

    /// When set, start() fails with this sentence.
    std::string startFailure;

  private:
    std::mutex mutex_;
    Receiver receiver_;
    std::vector<std::string> posted_;
};

}  // namespace doubles
