// SPDX-License-Identifier: MIT
#pragma once

#include <boost/json/value.hpp>
#include <string>
#include <string_view>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace console {

enum class Layout { OneLine, Indented };

/// The value as JSON: its members in the order in which they were put in, numbers in their shortest form.
/// Without a line end.
std::string jsonText(const boost::json::value& value, Layout layout = Layout::OneLine);

/// Reads one JSON text, at most 32 containers deep. The error is a sentence that names the byte where the
/// text ceases to be JSON.
platform::Result<boost::json::value> parsedJSON(std::string_view text);

/// A property list's value as JSON has it: dates and data are their descriptions, what is no UTF-8 is made
/// visible, numbers that are not finite are null.
boost::json::value jsonOf(const platform::Value& value);

}  // namespace console
