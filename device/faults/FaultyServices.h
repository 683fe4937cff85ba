// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "device/faults/Faults.h"
#include "platform/foundation/Device.h"

namespace device {

/// The device with services that have these faults whenever they are active: its files, calendars, networks,
/// tones and mail. A member that is empty stays so. What uses the device knows nothing of it.
platform::Device withFaults(platform::Device device, const std::shared_ptr<Faults>& faults);

}  // namespace device
