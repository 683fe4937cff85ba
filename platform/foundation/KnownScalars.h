// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/foundation/BinaryListScalar.h"

namespace platform {

/// Which objects of a binary property list in the making hold which scalars, so that equal ones are stored
/// once. What the scalars were made of must outlive this.
class KnownScalars {
  public:
    using Object = std::uint32_t;

    /// The object that holds the scalar. When there is none, it is `next` from now on, and the answer is
    /// empty.
    std::optional<Object> find(const BinaryListScalar& scalar, Object next);

  private:
    struct Entry {
        BinaryListScalar scalar;
        std::uint32_t hash;
        Object object;
    };

    void grow();

    std::vector<Entry> entries_;
    /// Numbers of entries, one more each, by the lower bits of their hashes; 0 is an empty place. A place
    /// that is taken stands for the next one.
    std::vector<std::uint32_t> places_;
};

}  // namespace platform
