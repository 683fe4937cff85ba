// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

#include "device/Descriptor.h"

namespace settings {

/// One call after a time of the machine's clock, from the main run loop. Main thread.
class Alarm {
  public:
    /// Throws std::system_error when the system has no timer left.
    explicit Alarm(std::function<void()> due);
    ~Alarm();
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;

    /// Takes the place of a time that was set before.
    void set(std::chrono::milliseconds after);
    void cancel();
    bool isSet() const { return isSet_; }

  private:
    std::function<void()> due_;
    device::Descriptor timer_;
    bool isSet_ = false;
};

}  // namespace settings
