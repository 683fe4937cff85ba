// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

namespace platform {

/// Where the phone takes from what nobody can foresee: identifiers, names of files. Usable from any thread.
class RandomSource {
  public:
    virtual ~RandomSource() = default;

    virtual void fill(std::span<std::uint8_t> bytes) = 0;
};

/// Fills the bytes from the installed device's source; from the system's on a device without one.
void fillWithRandomBytes(std::span<std::uint8_t> bytes);

}  // namespace platform
