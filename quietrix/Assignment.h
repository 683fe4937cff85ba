// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "profile/model/QXProfile.h"
#include "quietrix/KeyForm.h"

namespace console {

/// "KEY=VALUE" of a command line, with "+=" and "-=" for lists.
struct Assignment {
    enum class Operation { Set, Add, Remove };

    const KeyForm* key = nullptr;
    Operation operation = Operation::Set;
    platform::Value value;

    /// The error names the key and what it takes.
    static platform::Result<Assignment> parse(std::string_view text);
    static platform::Result<std::vector<Assignment>> parse(const std::vector<std::string>& texts);

    /// Sets the key unless it has that value; tells whether it was set.
    bool applyTo(quietrix::QXProfile& profile) const;
};

/// Sets a key to a value that acceptedValue() gave, unless it has that value.
bool setIfDifferent(quietrix::QXProfile& profile, std::string_view key, const platform::Value& value);

}  // namespace console
