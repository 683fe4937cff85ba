// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <string>
#include <utility>

#include "platform/foundation/Error.h"

namespace settings {

/// Why a command was not done. Nothing has changed then.
struct Refusal {
    /// Stale: what the command names by a screen's or a presented thing's number, or by a row's key, is not
    /// there any more; whoever sent it looked at an older state.
    enum class Kind { Impossible, Stale };

    /// Implicit: most commands fail with nothing more than an error.
    Refusal(platform::Error reason) : error(std::move(reason)) {}
    Refusal(Kind as, platform::Error reason) : error(std::move(reason)), kind(as) {}

    platform::Error error;
    Kind kind = Kind::Impossible;
};

/// What a command gives.
template <class T>
using Outcome = std::expected<T, Refusal>;

/// The failure of a command that names what is not there any more.
inline std::unexpected<Refusal> stale(std::string description) {
    return std::unexpected(Refusal(Refusal::Kind::Stale, {std::move(description)}));
}

}  // namespace settings
