// SPDX-License-Identifier: MIT
#include "quietrix/Assignment.h"

#include <algorithm>
#include <charconv>

#include "device/EscapedText.h"
#include "json/JSONValue.h"
#include "platform/foundation/CaseInsensitive.h"
#include "quietrix/JSONText.h"

namespace console {

using platform::failure;
using platform::Result;
using platform::Value;
using Kind = KeyForm::Kind;

namespace {

/// Nil for none of the words.
Value booleanOf(std::string_view text) {
    for (const std::string_view word : {"true", "yes", "on", "1"})
        if (platform::equalIgnoringCase(word, text)) return true;
    for (const std::string_view word : {"false", "no", "off", "0"})
        if (platform::equalIgnoringCase(word, text)) return false;
    return {};
}

/// The text itself when it is no number.
template <class Number>
Value numberOf(std::string_view text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? Value(number) : Value(text);
}

/// The texts between the commas; "\," is a comma and "\\" a backslash within one.
Result<Value> listOf(std::string_view key, std::string_view text) {
    if (text.starts_with('[')) {
        const auto json = parsedJSON(text);
        if (!json) return failure(std::string(key) + ": " + json.error().localizedDescription);
        return json::valueOf(*json);
    }
    if (text.empty()) return Value(platform::Array());
    platform::Array list;
    std::string element;
    const auto take = [&] {
        const bool isEmpty = element.empty();
        list.emplace_back(std::exchange(element, {}));
        return !isEmpty;
    };
    bool hasAll = true;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isEscape =
            text[at] == '\\' && at + 1 < text.size() && (text[at + 1] == ',' || text[at + 1] == '\\');
        if (isEscape) {
            element += text[++at];
        } else if (text[at] == ',') {
            hasAll = take() && hasAll;
        } else {
            element += text[at];
        }
    }
    hasAll = take() && hasAll;
    if (!hasAll) return failure(std::string(key) + ": there is an empty text in the list.");
    return Value(std::move(list));
}

Result<Value> valueOfText(const KeyForm& form, std::string_view text) {
    switch (form.kind) {
        case Kind::Boolean:
            if (Value boolean = booleanOf(text)) return boolean;
            return Value(text);
        case Kind::Volume:
            return numberOf<double>(text);
        case Kind::EventStatus:
            return numberOf<std::int64_t>(text);
        case Kind::Tone:
            return text.empty() || platform::equalIgnoringCase(text, "none") ? Value() : Value(text);
        case Kind::List:
            return listOf(form.key, text);
        default:
            return Value(text);
    }
}

std::unexpected<platform::Error> unknownKey(std::string_view key) {
    if (const auto* known = quietrix::profileKey(key); known && !known->isStored())
        return failure("The key " + device::quotedText(key) + " cannot be set.");
    return failure("A profile has no key " + device::quotedText(key) + "; the command keys tells them.");
}

}  // namespace

Result<Assignment> Assignment::parse(std::string_view text) {
    const std::size_t sign = text.find('=');
    if (sign == std::string_view::npos) return failure(device::quotedText(text) + " is no KEY=VALUE.");
    std::string_view key = text.substr(0, sign);
    Assignment assignment;
    if (key.ends_with('+')) assignment.operation = Operation::Add;
    if (key.ends_with('-')) assignment.operation = Operation::Remove;
    if (assignment.operation != Operation::Set) key.remove_suffix(1);

    assignment.key = keyForm(key);
    if (!assignment.key) return unknownKey(key);
    if (assignment.key->kind == Kind::Identifier)
        return failure("The identifier of a profile is never changed.");
    if (assignment.operation != Operation::Set && assignment.key->kind != Kind::List)
        return failure(std::string(key) + " is no list: += and -= are for lists.");
    const auto offered = valueOfText(*assignment.key, text.substr(sign + 1));
    if (!offered) return std::unexpected(offered.error());
    auto accepted = acceptedValue(*assignment.key, *offered);
    if (!accepted) return std::unexpected(accepted.error());
    assignment.value = *std::move(accepted);
    return assignment;
}

Result<std::vector<Assignment>> Assignment::parse(const std::vector<std::string>& texts) {
    std::vector<Assignment> assignments;
    for (const std::string& text : texts) {
        auto assignment = parse(text);
        if (!assignment) return std::unexpected(assignment.error());
        assignments.push_back(*std::move(assignment));
    }
    return assignments;
}

bool Assignment::applyTo(quietrix::QXProfile& profile) const {
    if (operation == Operation::Set) return setIfDifferent(profile, key->key, value);
    platform::Array list = *profile.valueForKey(key->key).array();
    for (const Value& element : *value.array()) {
        const auto place = std::ranges::find(list, element);
        if (operation == Operation::Add && place == list.end()) list.push_back(element);
        if (operation == Operation::Remove && place != list.end()) list.erase(place);
    }
    return setIfDifferent(profile, key->key, Value(std::move(list)));
}

bool setIfDifferent(quietrix::QXProfile& profile, std::string_view key, const Value& value) {
    if (profile.valueForKey(key) == value) return false;
    profile.setValue_forKey(value, key);
    return true;
}

}  // namespace console
