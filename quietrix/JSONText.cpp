// SPDX-License-Identifier: MIT
#include "quietrix/JSONText.h"

#include <array>
#include <boost/json.hpp>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "device/EscapedText.h"
#include "platform/foundation/Hexadecimal.h"
#include "platform/foundation/Unicode.h"

namespace console {

using platform::Value;

namespace {

constexpr std::size_t deepest = 32;

/// 0.5, where the library would write 5E-1.
std::string numberText(double number) {
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

/// What the library leaves as it is but would move a terminal's text becomes an escape of JSON's.
std::string stringText(boost::json::string_view text) {
    std::string plain = boost::json::serialize(boost::json::string(text));
    if (!device::movesText(plain)) return plain;
    std::string escaped;
    for (std::size_t at = 0; at < plain.size();) {
        const auto character =
            platform::decodeUTF8(plain, at).value_or(platform::DecodedCharacter{0xFFFD, 1});
        const std::string_view bytes = std::string_view(plain).substr(at, character.length);
        if (device::movesText(bytes)) {
            escaped += "\\u";
            for (const std::uint32_t byte : {character.codePoint >> 8U, character.codePoint & 0xFFU})
                platform::appendHexadecimal(escaped, static_cast<std::uint8_t>(byte),
                                            platform::capitalHexadecimalDigits);
        } else {
            escaped += bytes;
        }
        at += character.length;
    }
    return escaped;
}

class Writer {
  public:
    explicit Writer(Layout layout) : layout_(layout) {}

    void write(const boost::json::value& value) {
        if (const auto* object = value.if_object()) {
            bool isFirst = true;
            open('{');
            for (const auto& [key, member] : *object) {
                next(isFirst);
                text_ += stringText(key);
                text_ += layout_ == Layout::Indented ? ": " : ":";
                write(member);
            }
            close('}', isFirst);
        } else if (const auto* array = value.if_array()) {
            bool isFirst = true;
            open('[');
            for (const auto& element : *array) {
                next(isFirst);
                write(element);
            }
            close(']', isFirst);
        } else if (const auto* string = value.if_string()) {
            text_ += stringText(*string);
        } else {
            text_ += value.is_double() ? numberText(value.get_double()) : boost::json::serialize(value);
        }
    }
    std::string take() { return std::move(text_); }

  private:
    void open(char bracket) {
        text_ += bracket;
        ++depth_;
    }
    void next(bool& isFirst) {
        if (!isFirst) text_ += ',';
        isFirst = false;
        breakLine();
    }
    void close(char bracket, bool isEmpty) {
        --depth_;
        if (!isEmpty) breakLine();
        text_ += bracket;
    }
    void breakLine() {
        if (layout_ == Layout::Indented) text_ += '\n' + std::string(2 * depth_, ' ');
    }

    Layout layout_;
    std::size_t depth_ = 0;
    std::string text_;
};

}  // namespace

std::string jsonText(const boost::json::value& value, Layout layout) {
    Writer writer(layout);
    writer.write(value);
    return writer.take();
}

platform::Result<boost::json::value> parsedJSON(std::string_view text) {
    boost::json::parse_options options;
    options.max_depth = deepest;
    boost::json::stream_parser parser({}, options);
    boost::json::error_code error;
    const std::size_t read = parser.write_some(text.data(), text.size(), error);
    if (!error && read < text.size()) error = boost::json::error::extra_data;
    if (!error) parser.finish(error);
    if (error)
        return platform::failure("No JSON at byte " + std::to_string(read) + ": " + error.message() + ".");
    return parser.release();
}

boost::json::value jsonOf(const Value& value) {
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
            if (!std::isfinite(*value.real())) return nullptr;
            return *value.real();
        case Value::Type::String:
            return boost::json::string(device::escapedText(*value.string()));
        case Value::Type::Date:
        case Value::Type::Data:
            return boost::json::string(value.description());
        case Value::Type::Array: {
            boost::json::array array;
            for (const Value& element : *value.array()) array.push_back(jsonOf(element));
            return array;
        }
        case Value::Type::Dictionary: {
            boost::json::object object;
            for (const auto& [key, member] : *value.dictionary())
                object[device::escapedText(key)] = jsonOf(member);
            return object;
        }
    }
    return nullptr;
}

}  // namespace console
