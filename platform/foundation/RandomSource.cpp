// SPDX-License-Identifier: MIT
#include "platform/foundation/RandomSource.h"

#include <algorithm>
#include <random>

#include "platform/foundation/Device.h"

namespace platform {

void fillWithRandomBytes(std::span<std::uint8_t> bytes) {
    if (const std::shared_ptr<RandomSource> source = Device::current().random) return source->fill(bytes);
    std::random_device system;
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(system()); });
}

}  // namespace platform
