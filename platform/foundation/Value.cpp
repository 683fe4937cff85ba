// SPDX-License-Identifier: MIT
#include "platform/foundation/Value.h"

#include <bit>
#include <limits>
#include <utility>

#include "platform/foundation/Object.h"
#include "platform/foundation/ValueDescription.h"

namespace platform {

namespace {

template <class T, class Store>
std::optional<T> valueIn(const Store& store) {
    if (const T* held = std::get_if<T>(&store)) return *held;
    return std::nullopt;
}

template <class T, class Store>
const T* sharedIn(const Store& store) {
    const auto* held = std::get_if<std::shared_ptr<const T>>(&store);
    return held == nullptr ? nullptr : held->get();
}

std::uint64_t bits(double real) {
    return std::bit_cast<std::uint64_t>(real);
}

}  // namespace

Value::Value(const char* text) {
    if (text != nullptr) store_ = std::make_shared<const std::string>(text);
}
Value::Value(std::string text) : store_(std::make_shared<const std::string>(std::move(text))) {}
Value::Value(std::string_view text) : store_(std::make_shared<const std::string>(text)) {}
Value::Value(platform::Data data) : store_(std::make_shared<const platform::Data>(std::move(data))) {}
Value::Value(platform::Array array) : store_(std::make_shared<const platform::Array>(std::move(array))) {}
Value::Value(platform::Dictionary dictionary)
    : store_(std::make_shared<const platform::Dictionary>(std::move(dictionary))) {}

void Value::setUnsigned(std::uint64_t integer) {
    // One form for each number, so that equal integers are equal values whatever type they came from.
    if (std::in_range<std::int64_t>(integer)) {
        store_ = static_cast<std::int64_t>(integer);
    } else {
        store_ = integer;
    }
}

Value::Type Value::type() const {
    // In the order of the variant's alternatives; the two kinds of integers are one type.
    constexpr Type types[] = {Type::Nil,   Type::Boolean,    Type::Integer, Type::Integer,
                              Type::Real,  Type::String,     Type::Date,    Type::Data,
                              Type::Array, Type::Dictionary, Type::Object};
    static_assert(std::size(types) == std::variant_size_v<decltype(store_)>);
    return types[store_.index()];
}

std::optional<bool> Value::boolean() const {
    return valueIn<bool>(store_);
}
std::optional<std::int64_t> Value::integer() const {
    return valueIn<std::int64_t>(store_);
}
std::optional<double> Value::real() const {
    return valueIn<double>(store_);
}
std::optional<platform::Date> Value::date() const {
    return valueIn<platform::Date>(store_);
}
const std::string* Value::string() const {
    return sharedIn<std::string>(store_);
}
const platform::Data* Value::data() const {
    return sharedIn<platform::Data>(store_);
}
const platform::Array* Value::array() const {
    return sharedIn<platform::Array>(store_);
}
const platform::Dictionary* Value::dictionary() const {
    return sharedIn<platform::Dictionary>(store_);
}

std::optional<std::uint64_t> Value::unsignedInteger() const {
    const auto number = integer();
    if (!number) return valueIn<std::uint64_t>(store_);
    if (*number < 0) return std::nullopt;
    return static_cast<std::uint64_t>(*number);
}

std::shared_ptr<platform::Object> Value::object() const {
    return valueIn<std::shared_ptr<platform::Object>>(store_).value_or(nullptr);
}

bool Value::isTrue() const {
    if (const auto truth = boolean()) return *truth;
    if (const auto number = integer()) return *number != 0;
    if (const auto number = real()) return *number != 0.0;
    return std::holds_alternative<std::uint64_t>(store_);
}

std::optional<double> Value::number() const {
    if (const auto truth = boolean()) return *truth ? 1.0 : 0.0;
    if (const auto number = integer()) return static_cast<double>(*number);
    if (const auto number = unsignedInteger()) return static_cast<double>(*number);
    return real();
}

std::string Value::stringOr(std::string_view fallback) const {
    const std::string* text = string();
    return text != nullptr ? *text : std::string(fallback);
}

Value Value::operator[](std::string_view key) const {
    const platform::Dictionary* entries = dictionary();
    if (entries == nullptr) return {};
    const auto entry = entries->find(key);
    return entry == entries->end() ? Value() : entry->second;
}

std::string Value::description() const {
    return describe(*this);
}

bool Value::operator==(const Value& other) const {
    if (store_.index() != other.store_.index()) return false;
    switch (type()) {
        case Type::Real:
            return bits(*real()) == bits(*other.real());
        case Type::Date:
            return bits(date()->secondsSinceReference) == bits(other.date()->secondsSinceReference);
        case Type::String:
            return string() == other.string() || *string() == *other.string();
        case Type::Data:
            return data() == other.data() || *data() == *other.data();
        // Shared containers are equal without a walk, which also keeps trees of shared parts cheap to
        // compare.
        case Type::Array:
            return array() == other.array() || *array() == *other.array();
        case Type::Dictionary:
            return dictionary() == other.dictionary() || *dictionary() == *other.dictionary();
        default:
            return store_ == other.store_;
    }
}

}  // namespace platform
