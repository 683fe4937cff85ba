// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace platform {

enum class PropertyListFormat { XML = 100, Binary = 200 };

/// Reads and writes property lists: dictionaries, arrays, strings, data, dates, integers, reals and booleans.
/// Usable from any thread.
class PropertyListSerialization {
  public:
    /// Containers nest at most this deep, in both directions.
    static constexpr int maximumDepth = 512;

    /// Tells binary and XML apart by their first bytes. Hostile bytes are safe: every offset, reference, size
    /// and depth is checked before it is used, a file that refers to its own ancestor is refused, and shared
    /// references are expanded only up to a bound in proportion to the file. Strings that have no UTF-8 form
    /// (half a surrogate pair) are errors. The error says what is wrong and at which byte offset (binary) or
    /// line (XML); it does not know the file's name.
    static Result<Value> propertyListWithData(const Data& data);
    static Result<PropertyListFormat> formatOfData(const Data& data);

    /// Fails for nil, for objects, for strings that are no UTF-8, and beyond the depth; the error names the
    /// key path of the offender. Binary lists hold everything else to the bit. XML has no control characters
    /// and no dates outside the years 1 to 9999 (errors as well), drops the fractions of a date's seconds and
    /// the payload of a NaN.
    static Result<Data> dataWithPropertyList(const Value& value, PropertyListFormat format);
};

}  // namespace platform
