// SPDX-License-Identifier: MIT
#pragma once

#include <boost/json/value.hpp>

#include "platform/foundation/Value.h"

namespace json {

/// A JSON value as a property list's: null is nil, numbers keep their kind, an object is a dictionary, in
/// which the last of several members of one name counts.
platform::Value valueOf(const boost::json::value& value);

}  // namespace json
