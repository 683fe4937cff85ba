// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Error.h"

namespace device {

/// What an "index.theme" says of a sound theme. Names that lead out of the theme's folder, or out of the
/// folder of themes, are dropped.
struct SoundThemeIndex {
    static constexpr std::size_t maximumSize = std::size_t{64} << 10;
    /// Of folders, and of themes inherited; the rest is dropped.
    static constexpr std::size_t maximumNames = 64;

    /// The folders within the theme that hold its sounds, the preferred one first.
    std::vector<std::string> directories;
    /// The themes to look in for what this one does not have, the preferred one first.
    std::vector<std::string> inherits;
    /// Whether it is there only for others to inherit from.
    bool hidden = false;

    /// The error completes a sentence about the file, "is no sound theme: …".
    static platform::Result<SoundThemeIndex> parse(std::string_view text);
};

}  // namespace device
