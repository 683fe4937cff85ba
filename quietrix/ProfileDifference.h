// SPDX-License-Identifier: MIT
#pragma once

#include <boost/json/object.hpp>
#include <string>
#include <vector>

#include "platform/foundation/Value.h"

namespace console {

/// A key of a profile whose value became another.
struct ValueChange {
    std::string key;
    platform::Value before;
    platform::Value after;
};

/// The stored keys whose values differ, in the keys' order. A profile that is not there has no values.
std::vector<ValueChange> differenceBetween(const platform::Dictionary& before,
                                           const platform::Dictionary& after);

/// {KEY: [OLD, NEW]}
boost::json::object jsonOfChanges(const std::vector<ValueChange>& changes);
/// "vibrate yes → no, title "A" → "B"", made visible.
std::string changesInWords(const std::vector<ValueChange>& changes);

}  // namespace console
