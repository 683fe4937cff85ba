// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/foundation/CalendarSource.h"
#include "platform/foundation/ToneSource.h"

namespace settings {

/// The machine's calendars, networks and tones, whether it is on a network, and why it could not be what a
/// change of the device named (empty: it could).
using Calendars = std::vector<platform::CalendarEntry>;
using Networks = std::vector<std::string>;
using Connected = bool;
using Tones = std::vector<platform::ToneEntry>;
/// Why what the command `device` named could not be used; without a reason it could.
struct DeviceRefusal {
    std::optional<std::string> reason;

    bool operator==(const DeviceRefusal&) const = default;
};

/// What the phone has found on its machine when it looked.
struct MachineAnswer {
    std::variant<Calendars, Networks, Connected, Tones, DeviceRefusal> what;
    /// What the machine's service has logged meanwhile.
    std::vector<std::string> log;

    bool operator==(const MachineAnswer&) const = default;
};

/// In the order of looking.
using MachineAnswers = std::deque<MachineAnswer>;

}  // namespace settings
