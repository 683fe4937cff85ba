// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "device/VirtualClock.h"
#include "device/faults/Faults.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/FileSystem.h"

namespace settings {

/// The phone that the application runs on, as far as it can be changed while it runs. Main thread.
class RunningPhone {
  public:
    virtual ~RunningPhone() = default;

    /// Checks "KEY=VALUE" pairs as those of `--device`; the error names the one that cannot be used.
    virtual platform::Result<void> checkDevice(const std::vector<std::string>& pairs) const = 0;
    /// Changes what the pairs name and leaves everything else as it is by now; all or nothing. No screen of a
    /// bundle may be open.
    virtual platform::Result<void> changeDevice(const std::vector<std::string>& pairs) = 0;
    /// "KEY=VALUE" pairs of how it is equipped by now, its dark mode and its time included.
    virtual std::vector<std::string> devicePairs() const = 0;
    /// Null when the phone has the machine's time.
    virtual std::shared_ptr<device::VirtualClock> clock() const = 0;
    /// The root's files as they are, without any fault.
    virtual std::shared_ptr<platform::FileSystem> files() const = 0;
    /// What is wrong with the phone on purpose.
    virtual device::Faults& faults() = 0;
};

}  // namespace settings
