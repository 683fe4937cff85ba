// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryListScalar.h"

#include <algorithm>
#include <bit>
#include <functional>

#include "platform/foundation/BinaryListEncoding.h"
#include "platform/foundation/Unicode.h"

namespace platform {

using Encoding = BinaryListEncoding;
using Format = BinaryListFormat;

namespace {

constexpr std::uint8_t textMarker = Format::marker(Format::Kind::Ascii, 0);
constexpr std::uint8_t dataMarker = Format::marker(Format::Kind::Bytes, 0);
constexpr std::uint8_t realMarker = Format::marker(Format::Kind::Real, 3);
constexpr std::uint8_t dateMarker = Format::marker(Format::Kind::Date, 3);

// An empty content is one as well.
constexpr const char* nowhere = "";

bool isASCII(std::string_view text) {
    return std::ranges::all_of(text, [](char byte) { return static_cast<std::uint8_t>(byte) < 0x80; });
}

/// Hands each unit of the text's UTF-16 form to `take`.
template <class Take>
void encodeUTF16(std::string_view text, Take take) {
    std::size_t position = 0;
    while (const auto character = decodeUTF8(text, position)) {
        position += character->length;
        const char32_t codePoint = character->codePoint;
        if (codePoint < 0x10000) {
            take(static_cast<std::uint16_t>(codePoint));
        } else {
            take(static_cast<std::uint16_t>(0xD800 + ((codePoint - 0x10000) >> 10)));
            take(static_cast<std::uint16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF)));
        }
    }
}

std::size_t unitsOf(std::string_view text) {
    std::size_t units = 0;
    encodeUTF16(text, [&](std::uint16_t) { ++units; });
    return units;
}

}  // namespace

BinaryListScalar::BinaryListScalar(std::string_view text)
    : marker_(textMarker), number_(text.size()), content_(text.empty() ? nowhere : text.data()) {}

BinaryListScalar::BinaryListScalar(const Value& value) : BinaryListScalar(of(value)) {}

BinaryListScalar BinaryListScalar::of(const Value& value) {
    switch (value.type()) {
        case Value::Type::String:
            return BinaryListScalar(std::string_view(*value.string()));
        case Value::Type::Data: {
            const Data& data = *value.data();
            BinaryListScalar scalar(dataMarker, data.size());
            scalar.content_ = data.empty() ? nowhere : reinterpret_cast<const char*>(data.data());
            return scalar;
        }
        case Value::Type::Real:
            return {realMarker, std::bit_cast<std::uint64_t>(*value.real())};
        case Value::Type::Date:
            return {dateMarker, std::bit_cast<std::uint64_t>(value.date()->secondsSinceReference)};
        case Value::Type::Integer: {
            // Eight bytes are signed and all shorter ones are not, so a negative number takes eight, and
            // sixteen hold what is beyond the signed ones.
            const auto number = value.integer();
            if (!number) return {Format::integerMarker(16), *value.unsignedInteger()};
            const auto bits = static_cast<std::uint64_t>(*number);
            return {Format::integerMarker(*number < 0 ? 8 : Encoding::integerWidth(bits)), bits};
        }
        default:
            return {value.isTrue() ? Format::trueMarker : Format::falseMarker, 0};
    }
}

bool BinaryListScalar::operator==(const BinaryListScalar& other) const {
    if (marker_ != other.marker_ || number_ != other.number_) return false;
    return !hasContent() || content() == other.content();
}

std::size_t BinaryListScalar::hash() const {
    if (hasContent()) return std::hash<std::string_view>()(content()) + marker_;
    // The upper bits of the product depend on all of the number's.
    const std::uint64_t product = (number_ ^ marker_) * 0x9E3779B97F4A7C15U;
    return static_cast<std::size_t>(product ^ product >> 32);
}

std::size_t BinaryListScalar::encodedSize() const {
    if (!hasContent()) return 1 + Format::fixedSize(marker_);
    const std::size_t size = content().size();
    if (Format::kindOf(marker_) == Kind::Bytes || isASCII(content())) return Encoding::headSize(size) + size;
    const std::size_t units = unitsOf(content());
    return Encoding::headSize(units) + 2 * units;
}

void BinaryListScalar::appendTo(Data& bytes) const {
    if (!hasContent()) {
        bytes.push_back(marker_);
        const std::size_t size = Format::fixedSize(marker_);
        if (size > 8) bytes.resize(bytes.size() + size - 8);
        Encoding::appendNumber(bytes, number_, std::min<std::size_t>(size, 8));
        return;
    }
    const std::string_view text = content();
    if (Format::kindOf(marker_) == Kind::Bytes || isASCII(text)) {
        Encoding::appendHead(bytes, Format::kindOf(marker_), text.size());
        bytes.insert(bytes.end(), text.begin(), text.end());
        return;
    }
    const std::size_t units = unitsOf(text);
    Encoding::appendHead(bytes, Kind::Utf16, units);
    encodeUTF16(text, [&](std::uint16_t unit) { Encoding::appendNumber(bytes, unit, 2); });
}

}  // namespace platform
