// SPDX-License-Identifier: MIT
#include "platform/foundation/Value.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "platform/foundation/Object.h"
#include "platform/foundation/ValueDescription.h"

namespace platform {

Value::Value(const char* text) {
    if (text != nullptr) share(Kind::String, std::string(text));
}
Value::Value(std::string text) {
    share(Kind::String, std::move(text));
}
Value::Value(std::string_view text) {
    share(Kind::String, std::string(text));
}
Value::Value(platform::Data data) {
    share(Kind::Bytes, std::move(data));
}
Value::Value(platform::Array array) {
    share(Kind::Elements, std::move(array));
}
Value::Value(platform::Dictionary dictionary) {
    share(Kind::Dictionary, std::move(dictionary));
}

void Value::destroy() {
    SharedOwners* const owners = &this->owners();
    switch (kind_) {
        case Kind::String:
            delete static_cast<SharedContent<std::string>*>(owners);
            break;
        case Kind::Bytes:
            delete static_cast<SharedContent<platform::Data>*>(owners);
            break;
        case Kind::Elements:
            delete static_cast<SharedContent<platform::Array>*>(owners);
            break;
        case Kind::Dictionary:
            delete static_cast<SharedContent<platform::Dictionary>*>(owners);
            break;
        default:
            delete static_cast<SharedContent<std::shared_ptr<platform::Object>>*>(owners);
    }
}

Value::Type Value::type() const {
    // In the order of the kinds.
    constexpr Type types[] = {Type::Nil,   Type::Boolean,    Type::Integer, Type::Integer,
                              Type::Real,  Type::Date,       Type::String,  Type::Data,
                              Type::Array, Type::Dictionary, Type::Object};
    static_assert(std::size(types) == static_cast<std::size_t>(Kind::Object) + 1);
    return types[static_cast<std::size_t>(kind_)];
}

std::optional<std::uint64_t> Value::unsignedInteger() const {
    const bool isOne = kind_ == Kind::LargeInteger || (kind_ == Kind::Integer && *integer() >= 0);
    return isOne ? std::optional(bits_) : std::nullopt;
}

std::shared_ptr<platform::Object> Value::object() const {
    const auto* const held = contentIf<std::shared_ptr<platform::Object>>(Kind::Object);
    return held == nullptr ? nullptr : *held;
}

bool Value::isTrue() const {
    if (const auto truth = boolean()) return *truth;
    if (const auto number = integer()) return *number != 0;
    if (const auto number = real()) return *number != 0.0;
    return kind_ == Kind::LargeInteger;
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
    if (kind_ != other.kind_) return false;
    // Numbers are equal by their bits. Shared containers are equal without a walk, which also keeps trees of
    // shared parts cheap to compare.
    if (bits_ == other.bits_) return true;
    switch (kind_) {
        case Kind::String:
            return *string() == *other.string();
        case Kind::Bytes:
            return *data() == *other.data();
        case Kind::Elements:
            return *array() == *other.array();
        case Kind::Dictionary:
            return *dictionary() == *other.dictionary();
        case Kind::Object:
            return object() == other.object();
        default:
            return false;
    }
}

Dictionary::Dictionary(std::initializer_list<Entry> entries) {
    keys_.own().reserve(entries.size());
    values_.reserve(entries.size());
    for (const auto& [key, value] : entries) emplace(key, value);
}

Dictionary::Dictionary(Shared<Keys> keys, std::vector<Value> values)
    : keys_(std::move(keys)), values_(std::move(values)) {}

Dictionary Dictionary::ofEntries(std::vector<Entry> entries) {
    // Of equal keys the later one comes later.
    std::vector<std::size_t> order(entries.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    if (!std::ranges::is_sorted(entries, {}, &Entry::first)) {
        std::ranges::sort(order, [&](std::size_t left, std::size_t right) {
            const int compared = entries[left].first.compare(entries[right].first);
            return compared != 0 ? compared < 0 : left < right;
        });
    }
    Dictionary dictionary;
    Keys& keys = dictionary.keys_.own();
    keys.reserve(entries.size());
    dictionary.values_.reserve(entries.size());
    for (const std::size_t position : order) {
        auto& [key, value] = entries[position];
        if (!keys.empty() && keys.back() == key) {
            dictionary.values_.back() = std::move(value);
            continue;
        }
        keys.push_back(std::move(key));
        dictionary.values_.push_back(std::move(value));
    }
    return dictionary;
}

std::size_t Dictionary::position(std::string_view key) const {
    // Who fills one mostly does so in order.
    if (empty() || keys_->back() < key) return size();
    return static_cast<std::size_t>(std::ranges::lower_bound(*keys_, key, std::ranges::less()) -
                                    keys_->begin());
}

bool Dictionary::isAt(std::size_t position, std::string_view key) const {
    return position < size() && (*keys_)[position] == key;
}

Dictionary::iterator Dictionary::find(std::string_view key) {
    const std::size_t found = position(key);
    return isAt(found, key) ? iteratorAt(found) : end();
}

Dictionary::const_iterator Dictionary::find(std::string_view key) const {
    const std::size_t found = position(key);
    return isAt(found, key) ? iteratorAt(found) : end();
}

const Value& Dictionary::at(std::string_view key) const {
    const std::size_t found = position(key);
    if (!isAt(found, key)) throw std::out_of_range("There is no key \"" + std::string(key) + "\".");
    return values_[found];
}

Value& Dictionary::at(std::string_view key) {
    return const_cast<Value&>(std::as_const(*this).at(key));
}

Value& Dictionary::operator[](std::string_view key) {
    const std::size_t found = position(key);
    if (!isAt(found, key)) insertAt(found, key, Value());
    return values_[found];
}

std::pair<Dictionary::iterator, bool> Dictionary::insert_or_assign(std::string_view key, Value value) {
    const std::size_t found = position(key);
    const bool isNew = !isAt(found, key);
    if (isNew) {
        insertAt(found, key, std::move(value));
    } else {
        values_[found] = std::move(value);
    }
    return {iteratorAt(found), isNew};
}

std::pair<Dictionary::iterator, bool> Dictionary::emplace(std::string_view key, Value value) {
    const std::size_t found = position(key);
    const bool isNew = !isAt(found, key);
    if (isNew) insertAt(found, key, std::move(value));
    return {iteratorAt(found), isNew};
}

void Dictionary::insertAt(std::size_t position, std::string_view key, Value value) {
    const auto offset = static_cast<std::ptrdiff_t>(position);
    Keys& keys = keys_.own();
    keys.emplace(keys.begin() + offset, key);
    values_.insert(values_.begin() + offset, std::move(value));
}

void Dictionary::merge(const Dictionary& other) {
    for (const auto& [key, value] : other) emplace(key, value);
}

std::size_t Dictionary::erase(std::string_view key) {
    const std::size_t found = position(key);
    if (!isAt(found, key)) return 0;
    eraseAt(found);
    return 1;
}

Dictionary::iterator Dictionary::erase(const_iterator entry) {
    const std::size_t found = position((*entry).first);
    eraseAt(found);
    return iteratorAt(found);
}

void Dictionary::eraseAt(std::size_t position) {
    const auto offset = static_cast<std::ptrdiff_t>(position);
    Keys& keys = keys_.own();
    keys.erase(keys.begin() + offset);
    values_.erase(values_.begin() + offset);
}

bool Dictionary::operator==(const Dictionary& other) const {
    if (size() != other.size()) return false;
    return empty() ||
           ((keys_.get() == other.keys_.get() || *keys_ == *other.keys_) && values_ == other.values_);
}

}  // namespace platform
