// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "platform/foundation/Value.h"

namespace settings {

/// Where two answers differ.
struct AnswerDifference {
    /// "state.screen.rows[3].value".
    std::string path;
    /// As JSON, cut where that is long; "nothing" for what is on one side only.
    std::string was;
    std::string is;

    bool operator==(const AnswerDifference&) const = default;
};

/// The first difference, empty when there is none. First is what the user sees: the events, which tell how
/// that came about, and the revision come after the rest.
std::optional<AnswerDifference> firstDifference(const platform::Value& was, const platform::Value& is);

}  // namespace settings
