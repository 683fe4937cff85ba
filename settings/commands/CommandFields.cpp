// SPDX-License-Identifier: MIT
#include "settings/commands/CommandFields.h"

#include <cmath>

namespace settings {

using platform::Result;
using platform::Value;

namespace {

std::unexpected<platform::Error> wrongType(std::string_view key, std::string_view expected) {
    return platform::failure("\"" + std::string(key) + "\" must be " + std::string(expected) + ".");
}

}  // namespace

Value CommandFields::value(std::string_view key) const {
    const auto field = fields_.find(key);
    return field == fields_.end() ? Value() : field->second;
}

Result<bool> CommandFields::boolean(std::string_view key) const {
    if (const auto boolean = value(key).boolean()) return *boolean;
    return wrongType(key, "true or false");
}

Result<std::int64_t> CommandFields::integer(std::string_view key) const {
    if (const auto integer = value(key).integer()) return *integer;
    return wrongType(key, "a whole number");
}

Result<std::int64_t> CommandFields::index(std::string_view key) const {
    if (const auto integer = value(key).integer(); integer && *integer >= 0) return *integer;
    return wrongType(key, "a whole number from 0 on");
}

Result<std::optional<std::int64_t>> CommandFields::optionalIndex(std::string_view key) const {
    if (!has(key)) return std::nullopt;
    const Result<std::int64_t> index = this->index(key);
    if (!index) return std::unexpected(index.error());
    return *index;
}

Result<double> CommandFields::seconds(std::string_view key) const {
    const Value field = value(key);
    // A boolean counts as a number elsewhere, but nobody means one by it here.
    if (const auto number = field.number();
        number && !field.boolean() && std::isfinite(*number) && *number >= 0) {
        return *number;
    }
    return wrongType(key, "a number of seconds from 0 on");
}

Result<std::string> CommandFields::text(std::string_view key) const {
    const Value field = value(key);
    if (const std::string* text = field.string()) return *text;
    return wrongType(key, "a text");
}

Result<std::optional<std::string>> CommandFields::optionalText(std::string_view key) const {
    if (!has(key)) return std::nullopt;
    Result<std::string> text = this->text(key);
    if (!text) return std::unexpected(text.error());
    return std::move(*text);
}

}  // namespace settings
