// SPDX-License-Identifier: MIT
#pragma once

namespace quietrix {

/// Tells the keys of a record apart: each is known by the setter that writes it, so that no setter needs to
/// name its key once more. Compared only; what it points to means nothing.
using KeyIdentity = const void*;

template <auto setter>
KeyIdentity keyIdentity() {
    static constexpr char identity = 0;
    return &identity;
}

}  // namespace quietrix
