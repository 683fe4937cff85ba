// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "device/DeviceOptions.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/Error.h"

namespace settings {

/// What a phone has around it where that is not simply this machine: as when it is recorded, or lives again
/// what was recorded. Main thread.
class Surroundings {
  public:
    virtual ~Surroundings() = default;

    /// The options with these pairs changed, as DeviceOptions::with() gives them.
    virtual platform::Result<device::DeviceOptions> changed(const device::DeviceOptions& options,
                                                            const std::vector<std::string>& pairs) = 0;
    /// Exchanges services of the device, which was made from the options, before it is installed; called each
    /// time that is done. It comes without notifications and processes.
    virtual void equip(platform::Device& device, const device::DeviceOptions& options) = 0;
};

}  // namespace settings
