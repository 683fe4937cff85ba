// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/Value.h"

namespace platform {

/// What Value::description() answers. Containers are listed in one line: `("a", 1)`, `{"key" = "text"; "on" =
/// 1}`; strings inside them are quoted and escaped as in a localisation table, data is hexadecimal, `<0a
/// ff>`, dates are in UTC.
std::string describe(const Value& value);

/// The shortest text that reads back as the same number; "nan", "inf" and "-inf" for the others.
std::string shortestText(double real);

/// `YYYY-MM-DD` and `HH:MM:SS` of the instant in UTC, fractions dropped; both empty when the year is not
/// within 1 to 9999.
struct DateText {
    std::string day;
    std::string time;
};
DateText utcText(Date date);

}  // namespace platform
