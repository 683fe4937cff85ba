// SPDX-License-Identifier: MIT
#include "platform/foundation/Device.h"

#include <utility>

namespace platform {

namespace {

/// Never destroyed: threads that outlive main() may still ask for the device. A program that wants its
/// services ended in order installs an empty device before it returns.
Device& installedDevice() {
    static Device& device = *new Device;
    return device;
}

}  // namespace

const Device& Device::current() {
    return installedDevice();
}

void Device::install(Device device) {
    // The old services go only after the new ones are in place: their destructors may log or post.
    const Device old = std::exchange(installedDevice(), std::move(device));
}

}  // namespace platform
