// SPDX-License-Identifier: MIT
#include "settings/channels/JSON.h"

#include <boost/json.hpp>
#include <cmath>
#include <cstdint>
#include <utility>

#include "json/JSONValue.h"
#include "platform/foundation/Unicode.h"

namespace settings {

using platform::Array;
using platform::Value;

namespace {

/// The text with every ill-formed byte replaced; nearly always the text itself.
std::string wellFormed(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (;;) {
        const auto bad = platform::firstInvalidUTF8(text);
        result += text.substr(0, bad.value_or(text.size()));
        if (!bad) return result;
        constexpr char32_t replacementCharacter = 0xFFFD;
        platform::appendUTF8(result, replacementCharacter);
        text.remove_prefix(*bad + 1);
    }
}

boost::json::value jsonNumber(double number) {
    if (!std::isfinite(number)) return nullptr;
    // A whole number is written as people write one: 44, not 4.4E1.
    constexpr double exactlyRepresented = 9007199254740992.0;
    if (std::trunc(number) == number && std::abs(number) <= exactlyRepresented) {
        return static_cast<std::int64_t>(number);
    }
    return number;
}

boost::json::string jsonString(std::string_view text) {
    if (!platform::firstInvalidUTF8(text)) return boost::json::string(text.data(), text.size());
    const std::string repaired = wellFormed(text);
    return boost::json::string(repaired.data(), repaired.size());
}

boost::json::value jsonValue(const Value& value) {
    switch (value.type()) {
        case Value::Type::Nil:
        case Value::Type::Object:
            return nullptr;
        case Value::Type::Boolean:
            return *value.boolean();
        case Value::Type::Integer:
            if (const auto integer = value.integer()) return *integer;
            return value.unsignedInteger().value_or(0);
        case Value::Type::Real:
            return jsonNumber(*value.real());
        case Value::Type::String:
            return jsonString(*value.string());
        case Value::Type::Date:
        case Value::Type::Data:
            return jsonString(value.description());
        case Value::Type::Array: {
            boost::json::array array;
            array.reserve(value.array()->size());
            for (const Value& entry : *value.array()) array.push_back(jsonValue(entry));
            return array;
        }
        case Value::Type::Dictionary: {
            boost::json::object object;
            object.reserve(value.dictionary()->size());
            for (const auto& [key, entry] : *value.dictionary()) object[jsonString(key)] = jsonValue(entry);
            return object;
        }
    }
    return nullptr;
}

}  // namespace

platform::Result<Value> parseJSON(std::string_view text, std::size_t depth) {
    boost::json::parse_options options;
    options.max_depth = depth;
    boost::json::error_code error;
    const boost::json::value json = boost::json::parse({text.data(), text.size()}, error, {}, options);
    if (error) return platform::failure("The line is no JSON: " + error.message() + ".");
    return json::valueOf(json);
}

std::string jsonText(const Value& value) {
    return boost::json::serialize(jsonValue(value));
}

}  // namespace settings
