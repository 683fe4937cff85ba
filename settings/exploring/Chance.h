// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>

namespace settings {

/// Choices that follow from a seed, the same ones with every library.
class Chance {
  public:
    explicit Chance(std::uint64_t seed) : engine_(seed) {}

    /// 0 for 0.
    std::uint64_t below(std::uint64_t end) { return end == 0 ? 0 : engine_() % end; }
    bool percent(unsigned of100) { return below(100) < of100; }
    /// There must be one.
    template <class What>
    const What& of(std::span<const What> list) {
        return list[below(list.size())];
    }
    /// From 0 up to 1.
    double part() { return static_cast<double>(engine_() >> 11U) * 0x1p-53; }

  private:
    std::mt19937_64 engine_;
};

}  // namespace settings
