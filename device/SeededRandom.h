// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <mutex>
#include <random>
#include <span>

#include "platform/foundation/RandomSource.h"

namespace device {

/// Bytes that follow from a seed: the same ones in the same order on every machine. Not for secrets.
class SeededRandom : public platform::RandomSource {
  public:
    explicit SeededRandom(std::uint32_t seed) : engine_(seed) {}

    void fill(std::span<std::uint8_t> bytes) override;

  private:
    std::mutex mutex_;
    std::mt19937 engine_;
};

}  // namespace device
