// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryPropertyListWriter.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <utility>

#include "platform/foundation/Unicode.h"

namespace platform {

namespace {

constexpr std::uint8_t falseMarker = 0x08;
constexpr std::uint8_t trueMarker = 0x09;
constexpr std::uint8_t integerMarker = 0x10;
constexpr std::uint8_t realMarker = 0x23;
constexpr std::uint8_t dateMarker = 0x33;
constexpr std::uint8_t dataMarker = 0x40;
constexpr std::uint8_t asciiMarker = 0x50;
constexpr std::uint8_t utf16Marker = 0x60;
constexpr std::uint8_t arrayMarker = 0xA0;
constexpr std::uint8_t dictionaryMarker = 0xD0;
constexpr std::uint8_t countFollows = 0x0F;

std::size_t widthOf(std::uint64_t largest) {
    return std::max<std::size_t>(1, (static_cast<std::size_t>(std::bit_width(largest)) + 7) / 8);
}

std::string_view view(const Data& data) {
    return {reinterpret_cast<const char*>(data.data()), data.size()};
}

}  // namespace

Data BinaryPropertyListWriter::write(const Value& value) {
    BinaryPropertyListWriter writer;
    writer.add(value);
    return writer.encode();
}

BinaryPropertyListWriter::Index BinaryPropertyListWriter::add(const Value& value) {
    const bool isContainer = value.array() != nullptr || value.dictionary() != nullptr;
    return isContainer ? addContainer(value) : addScalar(value);
}

// The container's references get their place before its items are added, so that theirs follow behind.
BinaryPropertyListWriter::Index BinaryPropertyListWriter::addContainer(const Value& value) {
    const Array* elements = value.array();
    const std::size_t count = elements != nullptr ? elements->size() : value.dictionary()->size();
    const std::size_t referenceCount = elements != nullptr ? count : 2 * count;
    const std::size_t first = references_.size();
    references_.resize(first + referenceCount);
    const Index index =
        append(Container{elements != nullptr ? arrayMarker : dictionaryMarker, count, first, referenceCount});

    std::size_t next = first;
    if (elements != nullptr) {
        for (const Value& element : *elements) {
            const Index item = add(element);
            references_[next++] = item;
        }
        return index;
    }
    for (const auto& entry : *value.dictionary()) {
        const Index key = addText(entry.first);
        references_[next++] = key;
    }
    for (const auto& entry : *value.dictionary()) {
        const Index item = add(entry.second);
        references_[next++] = item;
    }
    return index;
}

BinaryPropertyListWriter::Index BinaryPropertyListWriter::addScalar(const Value& value) {
    if (const std::string* text = value.string()) return addText(*text);
    if (const Data* data = value.data()) return addOnce(data_, view(*data), data);
    if (const auto number = value.integer()) return addOnce(integers_, *number, value);
    if (const auto number = value.unsignedInteger()) return addOnce(largeIntegers_, *number, value);
    if (const auto number = value.real())
        return addOnce(reals_, std::bit_cast<std::uint64_t>(*number), value);
    if (const auto date = value.date()) {
        return addOnce(dates_, std::bit_cast<std::uint64_t>(date->secondsSinceReference), value);
    }
    auto& known = booleans_[value.isTrue() ? 1 : 0];
    if (!known) known = append(Scalar(value));
    return *known;
}

BinaryPropertyListWriter::Index BinaryPropertyListWriter::addText(std::string_view text) {
    return addOnce(strings_, text, text);
}

template <class Map, class Key>
BinaryPropertyListWriter::Index BinaryPropertyListWriter::addOnce(Map& map, const Key& key, Scalar scalar) {
    const auto [known, isNew] = map.try_emplace(key, entries_.size());
    if (isNew) append(std::move(scalar));
    return known->second;
}

BinaryPropertyListWriter::Index BinaryPropertyListWriter::append(Entry entry) {
    entries_.push_back(std::move(entry));
    return entries_.size() - 1;
}

Data BinaryPropertyListWriter::encode() {
    referenceWidth_ = widthOf(entries_.size() - 1);
    constexpr std::string_view magic = "bplist00";
    bytes_.assign(magic.begin(), magic.end());
    std::vector<std::size_t> offsets;
    offsets.reserve(entries_.size());
    for (const Entry& entry : entries_) {
        offsets.push_back(bytes_.size());
        std::visit([this](const auto& content) { encode(content); }, entry);
    }
    const std::size_t table = bytes_.size();
    const std::size_t offsetWidth = widthOf(offsets.back());
    for (const std::size_t offset : offsets) bigEndian(offset, offsetWidth);
    bytes_.insert(bytes_.end(), 6, 0);
    bigEndian(offsetWidth, 1);
    bigEndian(referenceWidth_, 1);
    bigEndian(entries_.size(), 8);
    bigEndian(0, 8);
    bigEndian(table, 8);
    return std::move(bytes_);
}

void BinaryPropertyListWriter::encode(const Scalar& scalar) {
    if (const auto* text = std::get_if<std::string_view>(&scalar)) return encodeText(*text);
    if (const auto* data = std::get_if<const Data*>(&scalar)) {
        encodeHeader(dataMarker, (*data)->size());
        bytes_.insert(bytes_.end(), (*data)->begin(), (*data)->end());
        return;
    }
    const Value& value = std::get<Value>(scalar);
    if (const auto truth = value.boolean()) {
        bytes_.push_back(*truth ? trueMarker : falseMarker);
    } else if (const auto number = value.real()) {
        encodeBits(realMarker, *number);
    } else if (const auto date = value.date()) {
        encodeBits(dateMarker, date->secondsSinceReference);
    } else {
        encodeInteger(value);
    }
}

void BinaryPropertyListWriter::encode(const Container& container) {
    encodeHeader(container.marker, container.count);
    for (std::size_t i = 0; i < container.referenceCount; ++i) {
        bigEndian(references_[container.firstReference + i], referenceWidth_);
    }
}

void BinaryPropertyListWriter::encodeText(std::string_view text) {
    if (std::ranges::all_of(text, [](char byte) { return static_cast<std::uint8_t>(byte) < 0x80; })) {
        encodeHeader(asciiMarker, text.size());
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        return;
    }
    std::vector<std::uint16_t> units;
    units.reserve(text.size());
    std::size_t position = 0;
    while (const auto character = decodeUTF8(text, position)) {
        position += character->length;
        const char32_t codePoint = character->codePoint;
        if (codePoint < 0x10000) {
            units.push_back(static_cast<std::uint16_t>(codePoint));
        } else {
            units.push_back(static_cast<std::uint16_t>(0xD800 + ((codePoint - 0x10000) >> 10)));
            units.push_back(static_cast<std::uint16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF)));
        }
    }
    encodeHeader(utf16Marker, units.size());
    for (const std::uint16_t unit : units) bigEndian(unit, 2);
}

void BinaryPropertyListWriter::encodeHeader(std::uint8_t marker, std::size_t count) {
    if (count < countFollows) {
        bytes_.push_back(static_cast<std::uint8_t>(marker | count));
        return;
    }
    bytes_.push_back(marker | countFollows);
    encodeInteger(Value(count));
}

void BinaryPropertyListWriter::encodeInteger(const Value& integer) {
    const auto number = integer.unsignedInteger();
    if (!number) {
        bytes_.push_back(integerMarker | 3);
        bigEndian(static_cast<std::uint64_t>(*integer.integer()), 8);
    } else if (!integer.integer()) {
        bytes_.push_back(integerMarker | 4);
        bigEndian(0, 8);
        bigEndian(*number, 8);
    } else {
        const std::size_t width = std::bit_ceil(widthOf(*number));
        bytes_.push_back(static_cast<std::uint8_t>(integerMarker | std::countr_zero(width)));
        bigEndian(*number, width);
    }
}

void BinaryPropertyListWriter::encodeBits(std::uint8_t marker, double number) {
    bytes_.push_back(marker);
    bigEndian(std::bit_cast<std::uint64_t>(number), 8);
}

void BinaryPropertyListWriter::bigEndian(std::uint64_t number, std::size_t width) {
    for (std::size_t shift = width * 8; shift > 0; shift -= 8) {
        bytes_.push_back(static_cast<std::uint8_t>(number >> (shift - 8)));
    }
}

}  // namespace platform
