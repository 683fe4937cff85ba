// SPDX-License-Identifier: MIT
#include "json/JSONValue.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace json {

using platform::Array;
using platform::Dictionary;
using platform::Value;

Value valueOf(const boost::json::value& value) {
    switch (value.kind()) {
        case boost::json::kind::null:
            return nullptr;
        case boost::json::kind::bool_:
            return value.get_bool();
        case boost::json::kind::int64:
            return value.get_int64();
        case boost::json::kind::uint64:
            return value.get_uint64();
        case boost::json::kind::double_:
            return value.get_double();
        case boost::json::kind::string:
            return std::string_view(value.get_string().data(), value.get_string().size());
        case boost::json::kind::array: {
            Array array;
            array.reserve(value.get_array().size());
            for (const auto& entry : value.get_array()) array.push_back(valueOf(entry));
            return array;
        }
        case boost::json::kind::object: {
            std::vector<Dictionary::Entry> entries;
            entries.reserve(value.get_object().size());
            for (const auto& [key, entry] : value.get_object())
                entries.emplace_back(std::string(key.data(), key.size()), valueOf(entry));
            return Dictionary::ofEntries(std::move(entries));
        }
    }
    return nullptr;
}

}  // namespace json
