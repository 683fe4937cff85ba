// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Value.h"

namespace device {

/// The tone that every phone has.
constexpr std::string_view calendarAlertTone = "Calendar Alert";

/// The names of the phone's own tones, calendarAlertTone among them, in their order.
std::vector<std::string> builtInToneNames();

/// A wave file (16 bits, one channel) with the tone, always the same bytes; empty when there is none of the
/// name.
std::optional<platform::Data> builtInTone(std::string_view name);

}  // namespace device
