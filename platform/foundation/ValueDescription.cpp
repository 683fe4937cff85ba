// SPDX-License-Identifier: MIT
#include "platform/foundation/ValueDescription.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "platform/foundation/Hexadecimal.h"
#include "platform/foundation/Object.h"

namespace platform {

namespace {

void appendQuoted(std::string& text, std::string_view content) {
    text += '"';
    for (const char character : content) {
        const auto code = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            text += '\\';
            text += character;
        } else if (character == '\n') {
            text += "\\n";
        } else if (character == '\t') {
            text += "\\t";
        } else if (character == '\r') {
            text += "\\r";
        } else if (code < 0x20 || code == 0x7F) {
            text += "\\U00";
            appendHexadecimal(text, code);
        } else {
            text += character;
        }
    }
    text += '"';
}

void appendData(std::string& text, const Data& data) {
    text += '<';
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (i > 0) text += ' ';
        appendHexadecimal(text, data[i]);
    }
    text += '>';
}

void appendDate(std::string& text, Date date) {
    const DateText parts = utcText(date);
    if (parts.day.empty()) {
        text += shortestText(date.secondsSinceReference) + " s";
    } else {
        text += parts.day + " " + parts.time + " +0000";
    }
}

enum class Strings { Plain, Quoted };

// Appends in place: building each level's text from copies of the deeper ones would take quadratic time.
void append(std::string& text, const Value& value, Strings strings) {
    switch (value.type()) {
        case Value::Type::Nil:
            text += "(null)";
            break;
        case Value::Type::Boolean:
            text += *value.boolean() ? "1" : "0";
            break;
        case Value::Type::Integer:
            text +=
                value.integer() ? std::to_string(*value.integer()) : std::to_string(*value.unsignedInteger());
            break;
        case Value::Type::Real:
            text += shortestText(*value.real());
            break;
        case Value::Type::String:
            if (strings == Strings::Plain) {
                text += *value.string();
            } else {
                appendQuoted(text, *value.string());
            }
            break;
        case Value::Type::Date:
            appendDate(text, *value.date());
            break;
        case Value::Type::Data:
            appendData(text, *value.data());
            break;
        case Value::Type::Array: {
            text += '(';
            std::string_view separator;
            for (const Value& element : *value.array()) {
                text += separator;
                append(text, element, Strings::Quoted);
                separator = ", ";
            }
            text += ')';
            break;
        }
        case Value::Type::Dictionary: {
            text += '{';
            std::string_view separator;
            for (const auto& [key, element] : *value.dictionary()) {
                text += separator;
                appendQuoted(text, key);
                text += " = ";
                append(text, element, Strings::Quoted);
                separator = "; ";
            }
            text += '}';
            break;
        }
        case Value::Type::Object:
            text += value.object()->getClass().name();
            break;
    }
}

}  // namespace

std::string describe(const Value& value) {
    std::string text;
    append(text, value, Strings::Plain);
    return text;
}

std::string shortestText(double real) {
    if (std::isnan(real)) return "nan";
    std::array<char, 32> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), real);
    return {buffer.data(), end};
}

DateText utcText(Date date) {
    using namespace std::chrono;
    constexpr sys_days reference = 2001y / January / 1;
    constexpr double first = duration<double>(sys_days(year(1) / January / 1) - reference).count();
    constexpr double end = duration<double>(sys_days(year(10000) / January / 1) - reference).count();
    // Also false for a date that is no number.
    if (!(date.secondsSinceReference >= first && date.secondsSinceReference < end)) return {};

    const auto whole = static_cast<std::int64_t>(std::floor(date.secondsSinceReference));
    const sys_seconds instant = reference + seconds(whole);
    const sys_days midnight = floor<days>(instant);
    const year_month_day ymd(midnight);
    const hh_mm_ss time(instant - midnight);
    std::array<char, 16> day{};
    std::array<char, 16> clock{};
    std::snprintf(day.data(), day.size(), "%04d-%02u-%02u", static_cast<int>(ymd.year()),
                  static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()));
    std::snprintf(clock.data(), clock.size(), "%02d:%02d:%02d", static_cast<int>(time.hours().count()),
                  static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
    return {day.data(), clock.data()};
}

}  // namespace platform
