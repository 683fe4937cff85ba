// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "platform/foundation/Value.h"

namespace platform {

/// Access to an object's properties by their names. Under "identifier" a record answers what it is a record
/// of: two of one class that answer the same there are records of the same thing. Nil or "" where there is no
/// such thing.
class KeyValueCoding {
  public:
    virtual ~KeyValueCoding() = default;

    /// The value under the key. An unknown key gives nil and one log line.
    virtual Value valueForKey(std::string_view key) const = 0;
    /// Stores the value under the key. An unknown key, a read-only one, or a value of the wrong type changes
    /// nothing and writes one log line.
    virtual void setValue_forKey(const Value& value, std::string_view key) = 0;
};

}  // namespace platform
