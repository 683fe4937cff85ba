// SPDX-License-Identifier: MIT
#include "device/SeededRandom.h"

namespace device {

void SeededRandom::fill(std::span<std::uint8_t> bytes) {
    constexpr std::uint32_t lowByte = 0xFF;
    const std::lock_guard lock(mutex_);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(engine_() & lowByte);
}

}  // namespace device
