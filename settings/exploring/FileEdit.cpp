// SPDX-License-Identifier: MIT
#include "settings/exploring/FileEdit.h"

#include <array>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/PropertyList.h"
#include "settings/exploring/Chance.h"

namespace settings {

using platform::Array;
using platform::Data;
using platform::Dictionary;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Value;

namespace {

const Array& otherValues() {
    static const Array values{Value(true),      Value(-1),
                              Value(1e300),     Value(""),
                              Value("🔕 %@\n"), Value(Data{0, 255}),
                              Value(Array{7}),  Value(Dictionary{{"key", Array()}}),
                              Value(INT64_MAX), Value(platform::Date{-1e9})};
    return values;
}

/// How many values there are within, itself included.
std::size_t countWithin(const Value& value) {
    std::size_t count = 1;
    if (const Array* array = value.array()) {
        for (const Value& each : *array) count += countWithin(each);
    } else if (const Dictionary* dictionary = value.dictionary()) {
        for (const auto& [key, each] : *dictionary) count += countWithin(each);
    }
    return count;
}

Value changed(const Value& value, FileEditKind kind, Chance& chance) {
    if (kind == FileEditKind::OtherKind) {
        const std::span<const Value> others(otherValues());
        const Value& other = chance.of(others);
        return other == value ? others.back() : other;
    }
    if (const Dictionary* dictionary = value.dictionary();
        dictionary && kind == FileEditKind::ForgetKey && !dictionary->empty()) {
        auto forgotten = dictionary->begin();
        for (auto left = chance.below(dictionary->size()); left > 0; --left) ++forgotten;
        Dictionary rest = *dictionary;
        rest.erase(forgotten->first);
        return rest;
    }
    if (const Array* array = value.array(); array && kind == FileEditKind::Repeat) {
        if (array->empty() || chance.percent(30)) return Array();
        Array more = *array;
        more.push_back((*array)[chance.below(array->size())]);
        return more;
    }
    return value;
}

/// The same tree with the value of that number, counted as countWithin() does, changed.
Value changedAt(const Value& value, std::size_t number, FileEditKind kind, Chance& chance) {
    if (number == 0) return changed(value, kind, chance);
    --number;
    if (const Array* array = value.array()) {
        Array copy = *array;
        for (Value& each : copy) {
            const std::size_t within = countWithin(each);
            if (number < within) {
                each = changedAt(each, number, kind, chance);
                break;
            }
            number -= within;
        }
        return copy;
    }
    if (const Dictionary* dictionary = value.dictionary()) {
        Dictionary copy = *dictionary;
        for (const auto& [key, each] : *dictionary) {
            const std::size_t within = countWithin(each);
            if (number < within) {
                copy[key] = changedAt(each, number, kind, chance);
                break;
            }
            number -= within;
        }
        return copy;
    }
    return value;
}

/// Whether the kind can do something to the value.
bool applies(const Value& value, FileEditKind kind) {
    if (kind == FileEditKind::ForgetKey) return value.dictionary() && !value.dictionary()->empty();
    if (kind == FileEditKind::Repeat) return value.array() != nullptr;
    return true;
}

void collectNumbers(const Value& value, FileEditKind kind, std::size_t& number,
                    std::vector<std::size_t>& numbers) {
    if (applies(value, kind)) numbers.push_back(number);
    ++number;
    if (const Array* array = value.array()) {
        for (const Value& each : *array) collectNumbers(each, kind, number, numbers);
    } else if (const Dictionary* dictionary = value.dictionary()) {
        for (const auto& [key, each] : *dictionary) collectNumbers(each, kind, number, numbers);
    }
}

Data written(const Value& tree, PropertyListFormat format, const Data& otherwise) {
    auto data = PropertyListSerialization::dataWithPropertyList(tree, format);
    return data ? *std::move(data) : otherwise;
}

Data editedList(const Data& bytes, FileEditKind kind, Chance& chance) {
    const auto tree = PropertyListSerialization::propertyListWithData(bytes);
    const auto format = PropertyListSerialization::formatOfData(bytes);
    if (!tree || !format) return bytes;
    if (kind == FileEditKind::OtherFormat) {
        return written(
            *tree, *format == PropertyListFormat::XML ? PropertyListFormat::Binary : PropertyListFormat::XML,
            bytes);
    }
    std::size_t number = 0;
    std::vector<std::size_t> numbers;
    collectNumbers(*tree, kind, number, numbers);
    if (numbers.empty()) return bytes;
    const std::size_t chosen = chance.of(std::span<const std::size_t>(numbers));
    return written(changedAt(*tree, chosen, kind, chance), *format, bytes);
}

Data textBytes(std::string_view text) {
    return {text.begin(), text.end()};
}

}  // namespace

std::string_view nameOf(FileEditKind kind) {
    constexpr std::array<std::string_view, fileEditKinds> names{
        "removed",
        "emptied",
        "cut short",
        "a bit changed",
        "overwritten with bytes that are no property list",
        "overwritten with a property list that is no dictionary",
        "a key taken out",
        "a value exchanged for one of another kind",
        "a list's entry repeated, or the list emptied",
        "rewritten in the other format",
    };
    return names[static_cast<std::size_t>(kind)];
}

std::optional<Data> edited(const std::optional<Data>& bytes, const FileEdit& edit) {
    Chance chance(edit.seed);
    switch (edit.kind) {
        case FileEditKind::Remove:
            return std::nullopt;
        case FileEditKind::Empty:
            return Data();
        case FileEditKind::Junk:
            return textBytes(chance.percent(50) ? "no property list" : "bplist00\x00\xff");
        case FileEditKind::NoDictionary:
            return written(chance.percent(50) ? Value(Array{1, "two"}) : Value("a text"),
                           chance.percent(50) ? PropertyListFormat::XML : PropertyListFormat::Binary, {});
        default:
            break;
    }
    if (!bytes || bytes->empty()) return bytes;
    Data result = *bytes;
    if (edit.kind == FileEditKind::CutShort) {
        result.resize(chance.below(result.size()));
    } else if (edit.kind == FileEditKind::FlipBit) {
        result[chance.below(result.size())] ^= static_cast<std::uint8_t>(1U << chance.below(8));
    } else {
        result = editedList(result, edit.kind, chance);
    }
    return result;
}

}  // namespace settings
