// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryListValues.h"

#include <algorithm>
#include <bit>
#include <string>
#include <utility>

namespace platform {

BinaryListValues::BinaryListValues(const BinaryList& list, Memory memory)
    : list_(list), made_(memory == Memory::OfAll ? list.count() : 0) {}

Value BinaryListValues::value(Object object) {
    if (made_.empty()) return make(object);
    if (made_[object].isNil()) made_[object] = make(object);
    return made_[object];
}

Value BinaryListValues::make(Object object) {
    const Head head = list_.head(object);
    switch (head.kind) {
        case Kind::Integer:
            return list_.integerValue(head);
        case Kind::Real:
            if (head.size == 4)
                return std::bit_cast<float>(static_cast<std::uint32_t>(list_.number(head.payload, 4)));
            return std::bit_cast<double>(list_.number(head.payload, 8));
        case Kind::Date:
            return Date{std::bit_cast<double>(list_.number(head.payload, 8))};
        case Kind::Bytes:
            return Data(list_.payload(head).begin(), list_.payload(head).end());
        case Kind::Ascii:
        case Kind::Utf16:
            return list_.text(head);
        case Kind::Uid:
            return list_.uidValue(head);
        case Kind::Elements:
            return array(head);
        case Kind::Entries:
            return dictionary(head);
        default:
            return head.marker == BinaryListFormat::trueMarker;
    }
}

Value BinaryListValues::array(const Head& head) {
    Array array;
    array.reserve(head.size);
    for (std::size_t at = head.payload; at < head.end; at += list_.referenceWidth_)
        array.push_back(value(list_.reference(at)));
    return array;
}

Value BinaryListValues::dictionary(const Head& head) {
    if (head.size == 0) return Dictionary();
    const auto& [keys, places] = shape(head.payload, head.size);
    std::vector<Value> values(keys->size());
    std::size_t at = head.payload + head.size * list_.referenceWidth_;
    for (const std::uint32_t place : places) {
        values[place] = value(list_.reference(at));
        at += list_.referenceWidth_;
    }
    return Dictionary(keys, std::move(values));
}

const BinaryListValues::Shape& BinaryListValues::shape(std::size_t at, std::size_t count) {
    const std::string_view references(reinterpret_cast<const char*>(&list_.bytes_[at]),
                                      count * list_.referenceWidth_);
    if (last_ != nullptr && last_->first == references) return last_->second;
    const auto [known, isNew] = shapes_.try_emplace(references);
    if (isNew) known->second = makeShape(at, count);
    last_ = &*known;
    return known->second;
}

BinaryListValues::Shape BinaryListValues::makeShape(std::size_t at, std::size_t count) const {
    std::vector<std::pair<std::string, std::uint32_t>> keys;
    keys.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i, at += list_.referenceWidth_)
        keys.emplace_back(list_.text(list_.head(list_.reference(at))), i);
    std::ranges::sort(keys);
    Shape shape;
    shape.places.resize(count);
    Dictionary::Keys& inOrder = shape.keys.own();
    for (auto& [key, position] : keys) {
        // A key that comes twice has one place, and the last value that gets there stays.
        if (inOrder.empty() || inOrder.back() != key) inOrder.push_back(std::move(key));
        shape.places[position] = static_cast<std::uint32_t>(inOrder.size() - 1);
    }
    return shape;
}

}  // namespace platform
