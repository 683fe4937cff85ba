// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"
#include "profile/model/QXProfileKeys.h"

namespace console {

/// What people and scripts may give a key of a profile, beyond the type that the record takes.
struct KeyForm {
    enum class Kind { Identifier, Text, Boolean, Time, Volume, Tone, List, EventStatus };

    std::string_view key;
    Kind kind;
    std::string_view meaning;
};

/// Null for a name that no stored key has.
const KeyForm* keyForm(std::string_view key);
/// What the kind is called, and which values it has.
std::string_view typeOf(KeyForm::Kind kind);
std::string_view rangeOf(KeyForm::Kind kind);

/// The value as the record stores it: times in the phone's own form, numbers within their range. The error
/// says what the key takes.
platform::Result<platform::Value> acceptedValue(const KeyForm& form, const platform::Value& offered);

/// A time of day, "9:00 AM", "9:00" or "21:30", as the phone stores it; empty for anything else.
std::optional<std::string> storedTime(std::string_view text);

}  // namespace console
