// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace device {

/// A colour as files spell it: "#RGB", "#RRGGBB", "#RRGGBBAA" (its alpha is dropped), or one of the colour
/// names of style sheets in any case; blanks around it, a byte-order mark among them, do not matter.
/// 0xRRGGBB; empty for anything else.
std::optional<std::uint32_t> colourFromText(std::string_view text);

}  // namespace device
