// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string_view>

#include "platform/foundation/Value.h"

namespace platform {

/// How GoogleTest names a value when a comparison fails: in words, its kind included where two kinds read
/// alike, as true and 1 do, or the real 1 and the integer. Every test executable sees it (quietrix_test), as
/// two that name values differently must not be linked into one.
inline void PrintTo(const Value& value, std::ostream* out) {
    switch (value.type()) {
        case Value::Type::Nil:
            *out << "nil";
            break;
        case Value::Type::Boolean:
            *out << (*value.boolean() ? "true" : "false");
            break;
        case Value::Type::Real:
            *out << "real " << value.description();
            break;
        case Value::Type::String:
            *out << testing::PrintToString(*value.string());
            break;
        case Value::Type::Date:
            *out << "date " << value.description();
            break;
        case Value::Type::Array: {
            std::string_view separator;
            *out << '(';
            for (const Value& element : *value.array()) {
                *out << separator;
                PrintTo(element, out);
                separator = ", ";
            }
            *out << ')';
            break;
        }
        case Value::Type::Dictionary: {
            std::string_view separator;
            *out << '{';
            for (const auto& [key, element] : *value.dictionary()) {
                *out << separator << testing::PrintToString(key) << " = ";
                PrintTo(element, out);
                separator = "; ";
            }
            *out << '}';
            break;
        }
        case Value::Type::Object:
            *out << value.description() << " at " << value.object().get();
            break;
        case Value::Type::Integer:
        case Value::Type::Data:
            *out << value.description();
            break;
    }
}

}  // namespace platform
