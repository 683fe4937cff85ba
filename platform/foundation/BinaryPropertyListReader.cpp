// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryPropertyListReader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <optional>
#include <utility>

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/Unicode.h"

namespace platform {

namespace {

constexpr std::string_view magic = "bplist00";
constexpr std::size_t trailerSize = 32;
constexpr std::uint64_t unbounded = ~std::uint64_t{0};

// Markers: the upper half says what the object is, the lower half is its width or count.
constexpr unsigned integerMarker = 0x1;
constexpr unsigned realMarker = 0x2;
constexpr unsigned dateMarker = 0x3;
constexpr unsigned dataMarker = 0x4;
constexpr unsigned asciiMarker = 0x5;
constexpr unsigned utf16Marker = 0x6;
constexpr unsigned uidMarker = 0x8;
constexpr unsigned arrayMarker = 0xA;
constexpr unsigned setMarker = 0xC;
constexpr unsigned dictionaryMarker = 0xD;
constexpr unsigned countFollows = 0xF;

std::uint64_t saturatingSum(std::uint64_t a, std::uint64_t b) {
    return a > unbounded - b ? unbounded : a + b;
}

std::string hexadecimal(unsigned byte) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "0x%02x", byte);
    return text.data();
}

}  // namespace

bool BinaryPropertyListReader::recognises(const Data& data) {
    return std::string_view(reinterpret_cast<const char*>(data.data()), data.size()).starts_with("bplist");
}

Result<Value> BinaryPropertyListReader::read(const Data& data) {
    BinaryPropertyListReader reader(data);
    if (const Result<void> trailer = reader.readTrailer(); !trailer) return std::unexpected(trailer.error());
    const Result<const Object*> top = reader.readObject(reader.topObject_, 0);
    if (!top) return std::unexpected(top.error());
    return (*top)->value;
}

Result<void> BinaryPropertyListReader::readTrailer() {
    if (bytes_.size() < magic.size() + trailerSize) {
        return failure("The binary property list has only " + std::to_string(bytes_.size()) +
                       " bytes; it was cut off.");
    }
    if (!std::equal(magic.begin(), magic.end(), bytes_.begin())) {
        return errorAt(6, "the binary property list is of an unknown version");
    }
    const std::size_t trailer = bytes_.size() - trailerSize;
    offsetWidth_ = bytes_[trailer + 6];
    referenceWidth_ = bytes_[trailer + 7];
    const std::uint64_t objectCount = bigEndian(trailer + 8, 8);
    topObject_ = bigEndian(trailer + 16, 8);
    const std::uint64_t table = bigEndian(trailer + 24, 8);

    if (offsetWidth_ < 1 || offsetWidth_ > 8)
        return errorAt(trailer + 6, "the width of offsets is not 1 to 8");
    if (referenceWidth_ < 1 || referenceWidth_ > 8) {
        return errorAt(trailer + 7, "the width of references is not 1 to 8");
    }
    if (table < magic.size() || table > trailer) {
        return errorAt(trailer + 24, "the offset table lies outside the file");
    }
    if (objectCount == 0 || objectCount > (trailer - table) / offsetWidth_) {
        return errorAt(trailer + 8, "the number of objects does not fit the offset table");
    }
    if (topObject_ >= objectCount) return errorAt(trailer + 16, "the root is an object that does not exist");
    end_ = static_cast<std::size_t>(table);
    objects_.resize(static_cast<std::size_t>(objectCount));
    return {};
}

Result<const BinaryPropertyListReader::Object*> BinaryPropertyListReader::readObject(std::uint64_t index,
                                                                                     int level) {
    Object& object = objects_[static_cast<std::size_t>(index)];
    if (object.state == State::Read) return &object;

    const std::size_t entry = end_ + static_cast<std::size_t>(index) * offsetWidth_;
    const std::uint64_t position = bigEndian(entry, offsetWidth_);
    if (position < magic.size() || position >= end_) return errorAt(entry, "an object lies outside the file");
    const auto offset = static_cast<std::size_t>(position);
    if (object.state == State::BeingRead) return errorAt(offset, "a container contains itself");

    const unsigned kind = bytes_[offset] >> 4;
    object.state = State::BeingRead;
    if (kind == arrayMarker || kind == dictionaryMarker) {
        if (level >= PropertyListSerialization::maximumDepth) {
            return errorAt(offset, "containers nest more than " +
                                       std::to_string(PropertyListSerialization::maximumDepth) + " deep");
        }
        object.height = 1;
        const Result<void> done = kind == arrayMarker ? readArray(offset, object, level + 1)
                                                      : readDictionary(offset, object, level + 1);
        if (!done) return std::unexpected(done.error());
    } else {
        Result<Value> scalar = readScalar(offset);
        if (!scalar) return std::unexpected(scalar.error());
        object.value = *std::move(scalar);
    }
    object.state = State::Read;
    return &object;
}

Result<Value> BinaryPropertyListReader::readScalar(std::size_t offset) {
    const unsigned marker = bytes_[offset];
    const unsigned low = marker & 0xF;
    switch (marker >> 4) {
        case 0x0:
            if (marker == 0x08) return Value(false);
            if (marker == 0x09) return Value(true);
            if (marker == 0x00) return errorAt(offset, "a null (marker 0x00) is no property-list value");
            break;
        case integerMarker:
            if (low <= 4) return readInteger(offset + 1, std::size_t{1} << low, "integer");
            break;
        case realMarker:
            if (low == 2 || low == 3) return readReal(offset + 1, std::size_t{1} << low);
            break;
        case dateMarker:
            if (low != 3) break;
            if (!has(offset + 1, 8)) return errorAt(offset, "a date is cut off");
            return Value(Date{std::bit_cast<double>(bigEndian(offset + 1, 8))});
        case dataMarker: {
            const Result<Body> body = readBody(offset, 1);
            if (!body) return std::unexpected(body.error());
            const auto content = bytes_.subspan(body->offset, static_cast<std::size_t>(body->count));
            return Value(Data(content.begin(), content.end()));
        }
        case asciiMarker:
        case utf16Marker:
            return readText(offset);
        case uidMarker:
            return readUID(offset);
        case setMarker:
            return errorAt(offset, "a set (marker " + hexadecimal(marker) + ") is no property-list value");
        default:
            break;
    }
    return errorAt(offset, "the marker " + hexadecimal(marker) + " is unknown");
}

Result<Value> BinaryPropertyListReader::readInteger(std::size_t offset, std::size_t width,
                                                    std::string_view what) {
    if (!has(offset, width)) return errorAt(offset, "an " + std::string(what) + " is cut off");
    if (width < 8) return Value(bigEndian(offset, width));
    if (width == 8) return Value(static_cast<std::int64_t>(bigEndian(offset, 8)));
    const std::uint64_t high = bigEndian(offset, 8);
    const std::uint64_t low = bigEndian(offset + 8, 8);
    if (high == 0) return Value(low);
    const auto negative = static_cast<std::int64_t>(low);
    if (high == unbounded && negative < 0) return Value(negative);
    return errorAt(offset, "an " + std::string(what) + " of 16 bytes does not fit 8");
}

Result<Value> BinaryPropertyListReader::readReal(std::size_t offset, std::size_t width) {
    if (!has(offset, width)) return errorAt(offset, "a real is cut off");
    if (width == 8) return Value(std::bit_cast<double>(bigEndian(offset, 8)));
    return Value(std::bit_cast<float>(static_cast<std::uint32_t>(bigEndian(offset, 4))));
}

Result<Value> BinaryPropertyListReader::readUID(std::size_t offset) {
    const std::size_t width = (bytes_[offset] & 0xFU) + 1;
    if (!has(offset + 1, width)) return errorAt(offset, "a UID is cut off");
    const std::size_t leading = width > 8 ? width - 8 : 0;
    for (std::size_t i = 0; i < leading; ++i) {
        if (bytes_[offset + 1 + i] != 0) return errorAt(offset, "a UID does not fit 8 bytes");
    }
    return Value(Dictionary{{"CF$UID", Value(bigEndian(offset + 1 + leading, width - leading))}});
}

Result<Value> BinaryPropertyListReader::readText(std::size_t offset) {
    const bool isASCII = bytes_[offset] >> 4 == asciiMarker;
    const Result<Body> body = readBody(offset, isASCII ? 1 : 2);
    if (!body) return std::unexpected(body.error());
    const auto content =
        bytes_.subspan(body->offset, static_cast<std::size_t>(body->count) * (isASCII ? 1 : 2));
    if (!isASCII) {
        if (auto text = utf8FromUTF16(content, ByteOrder::BigEndian)) return Value(*std::move(text));
        return errorAt(offset, "a string holds half a surrogate pair");
    }
    const auto foreign = std::ranges::find_if(content, [](std::uint8_t byte) { return byte >= 0x80; });
    if (foreign == content.end()) return Value(std::string(content.begin(), content.end()));
    return errorAt(body->offset + static_cast<std::size_t>(foreign - content.begin()),
                   "an ASCII string holds the byte " + hexadecimal(*foreign));
}

Result<void> BinaryPropertyListReader::readArray(std::size_t offset, Object& object, int level) {
    const Result<Body> body = readBody(offset, referenceWidth_);
    if (!body) return std::unexpected(body.error());
    Array elements;
    elements.reserve(static_cast<std::size_t>(body->count));
    for (std::uint64_t i = 0; i < body->count; ++i) {
        const auto item =
            readItem(body->offset + static_cast<std::size_t>(i) * referenceWidth_, object, level);
        if (!item) return std::unexpected(item.error());
        elements.push_back((*item)->value);
    }
    object.value = Value(std::move(elements));
    return {};
}

Result<void> BinaryPropertyListReader::readDictionary(std::size_t offset, Object& object, int level) {
    const Result<Body> body = readBody(offset, std::uint64_t{2} * referenceWidth_);
    if (!body) return std::unexpected(body.error());
    const std::size_t values = body->offset + static_cast<std::size_t>(body->count) * referenceWidth_;
    Dictionary entries;
    for (std::uint64_t i = 0; i < body->count; ++i) {
        const std::size_t step = static_cast<std::size_t>(i) * referenceWidth_;
        const auto key = readItem(body->offset + step, object, level);
        if (!key) return std::unexpected(key.error());
        const std::string* name = (*key)->value.string();
        if (name == nullptr) return errorAt(body->offset + step, "a dictionary's key is no string");
        // The key is copied into each dictionary that has it.
        if (auto counted = spend(name->size(), body->offset + step); !counted) return counted;
        if (auto counted = addCost(object, name->size(), body->offset + step); !counted) return counted;
        const auto item = readItem(values + step, object, level);
        if (!item) return std::unexpected(item.error());
        entries.insert_or_assign(*name, (*item)->value);
    }
    object.value = Value(std::move(entries));
    return {};
}

Result<BinaryPropertyListReader::Body> BinaryPropertyListReader::readBody(std::size_t offset,
                                                                          std::uint64_t itemWidth) {
    Body body{offset + 1, bytes_[offset] & 0xFU};
    if (body.count == countFollows) {
        if (!has(body.offset, 1)) return errorAt(offset, "a count is missing");
        const unsigned marker = bytes_[body.offset];
        if (marker >> 4 != integerMarker || (marker & 0xF) > 4)
            return errorAt(body.offset, "a count is no integer");
        const std::size_t width = std::size_t{1} << (marker & 0xF);
        const Result<Value> count = readInteger(body.offset + 1, width, "integer that counts");
        if (!count) return std::unexpected(count.error());
        const auto number = count->unsignedInteger();
        if (!number) return errorAt(body.offset, "a count is negative");
        body = {body.offset + 1 + width, *number};
    }
    if (body.offset > end_ || body.count > (end_ - body.offset) / itemWidth) {
        return errorAt(offset,
                       "an object of " + std::to_string(body.count) + " items reaches beyond the file");
    }
    if (auto counted = spend(body.count * itemWidth, offset); !counted)
        return std::unexpected(counted.error());
    return body;
}

Result<const BinaryPropertyListReader::Object*> BinaryPropertyListReader::readItem(
    std::size_t referenceOffset, Object& container, int level) {
    const std::uint64_t index = bigEndian(referenceOffset, referenceWidth_);
    if (index >= objects_.size())
        return errorAt(referenceOffset, "a reference names an object that does not exist");
    const Result<const Object*> item = readObject(index, level);
    if (!item) return item;
    const Object& object = **item;
    // A shared item was read at another level, so the height counts as well as the level.
    container.height =
        std::max<std::uint16_t>(container.height, static_cast<std::uint16_t>(object.height + 1));
    if (level + object.height > PropertyListSerialization::maximumDepth) {
        return errorAt(
            referenceOffset,
            "containers nest more than " + std::to_string(PropertyListSerialization::maximumDepth) + " deep");
    }
    if (auto counted = addCost(container, object.cost, referenceOffset); !counted) {
        return std::unexpected(counted.error());
    }
    return item;
}

Result<void> BinaryPropertyListReader::spend(std::uint64_t bytes, std::size_t offset) {
    spent_ = saturatingSum(spent_, bytes);
    if (spent_ <= bound()) return {};
    return errorAt(offset, "the objects share their bytes and hold far more than the file");
}

Result<void> BinaryPropertyListReader::addCost(Object& container, std::uint64_t cost, std::size_t offset) {
    container.cost = saturatingSum(container.cost, cost);
    if (container.cost <= bound()) return {};
    return errorAt(offset, "the references unfold to far more than the file holds");
}

std::uint64_t BinaryPropertyListReader::bound() const {
    return saturatingSum(expansionAllowance, expansionFactor * bytes_.size());
}

std::uint64_t BinaryPropertyListReader::bigEndian(std::size_t offset, std::size_t width) const {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < width; ++i) number = (number << 8) | bytes_[offset + i];
    return number;
}

std::unexpected<Error> BinaryPropertyListReader::errorAt(std::size_t offset, std::string_view problem) const {
    return failure("The binary property list is damaged at byte " + std::to_string(offset) + ": " +
                   std::string(problem) + ".");
}

}  // namespace platform
