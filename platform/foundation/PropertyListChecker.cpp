// SPDX-License-Identifier: MIT
#include "platform/foundation/PropertyListChecker.h"

#include "platform/foundation/Object.h"
#include "platform/foundation/Unicode.h"
#include "platform/foundation/ValueDescription.h"
#include "platform/foundation/XMLCharacters.h"

namespace platform {

Result<void> PropertyListChecker::check(const Value& value, PropertyListFormat format) {
    PropertyListChecker checker(format);
    const auto problem = checker.problem(value);
    if (!problem) return {};
    return failure("The property list cannot be written: " + checker.path() + " " + *problem + ".");
}

std::optional<std::string> PropertyListChecker::problem(const Value& value) {
    switch (value.type()) {
        case Value::Type::Nil:
            return "is nil";
        case Value::Type::Object:
            return "is an object of the class \"" + value.object()->getClass().name() + "\"";
        case Value::Type::String:
            return problemOfText(*value.string());
        case Value::Type::Date:
            if (format_ == PropertyListFormat::XML && utcText(*value.date()).day.empty()) {
                return "is a date outside the years 1 to 9999, which XML cannot hold";
            }
            return std::nullopt;
        case Value::Type::Array:
        case Value::Type::Dictionary:
            if (steps_.size() >= PropertyListSerialization::maximumDepth) {
                return "is nested more than " + std::to_string(PropertyListSerialization::maximumDepth) +
                       " deep";
            }
            return problemInside(value);
        default:
            return std::nullopt;
    }
}

// The steps stay as they are when a problem was found: they are its path.
std::optional<std::string> PropertyListChecker::problemInside(const Value& container) {
    if (const Array* elements = container.array()) {
        for (std::size_t i = 0; i < elements->size(); ++i) {
            steps_.emplace_back(i);
            if (auto found = problem((*elements)[i])) return found;
            steps_.pop_back();
        }
        return std::nullopt;
    }
    for (const auto& [key, element] : *container.dictionary()) {
        steps_.emplace_back(std::string_view(key));
        if (auto found = problemOfText(key)) return "has a key that " + *found;
        if (auto found = problem(element)) return found;
        steps_.pop_back();
    }
    return std::nullopt;
}

std::optional<std::string> PropertyListChecker::problemOfText(std::string_view text) const {
    if (format_ == PropertyListFormat::Binary) {
        if (const auto offset = firstInvalidUTF8(text)) {
            return "is no UTF-8 from byte " + std::to_string(*offset) + " on";
        }
        return std::nullopt;
    }
    if (const auto offset = firstInvalidXML(text)) {
        return "holds at byte " + std::to_string(*offset) + " what XML cannot hold";
    }
    return std::nullopt;
}

std::string PropertyListChecker::path() const {
    if (steps_.empty()) return "the root";
    std::string text;
    for (const Step& step : steps_) {
        if (const auto* index = std::get_if<std::size_t>(&step)) {
            text += "[" + std::to_string(*index) + "]";
        } else {
            if (!text.empty()) text += '.';
            text += std::get<std::string_view>(step);
        }
    }
    return '"' + text + '"';
}

}  // namespace platform
