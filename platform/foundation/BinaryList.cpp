// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryList.h"

#include <algorithm>
#include <bit>

#include "platform/foundation/BinaryListCheck.h"

namespace platform {

namespace {

constexpr std::size_t trailerSize = 32;

void appendUtf8(std::string& text, std::uint32_t character) {
    if (character < 0x80) {
        text += static_cast<char>(character);
        return;
    }
    const int continuations = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr std::uint32_t leads[] = {0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(leads[continuations] | (character >> (6 * continuations)));
    for (int i = continuations - 1; i >= 0; --i) {
        text += static_cast<char>(0x80 | ((character >> (6 * i)) & 0x3F));
    }
}

}  // namespace

Result<BinaryList> BinaryList::create(Data bytes) {
    if (bytes.size() < 8 + 1 + 1 + trailerSize)
        return failure("The binary property list is too short to be one.");
    BinaryList list;
    list.bytes_ = std::move(bytes);
    list.readTrailer();
    BinaryListCheck check(list);
    if (auto reason = check.run()) return failure(*std::move(reason));
    list.reachableBytes_ = check.reachableBytes();
    return list;
}

BinaryList BinaryList::trusted(Data bytes) {
    BinaryList list;
    list.bytes_ = std::move(bytes);
    list.readTrailer();
    return list;
}

void BinaryList::readTrailer() {
    const std::size_t trailer = bytes_.size() - trailerSize;
    offsetWidth_ = bytes_[trailer + 6];
    referenceWidth_ = bytes_[trailer + 7];
    // The check compares them at their full width before anything relies on them.
    count_ = static_cast<Object>(number(trailer + 8, 8));
    root_ = static_cast<Object>(number(trailer + 16, 8));
    tableStart_ = number(trailer + 24, 8);
}

std::uint64_t BinaryList::number(std::size_t at, int width) const {
    std::uint64_t result = 0;
    for (int i = 0; i < width; ++i) result = result << 8 | bytes_[at + static_cast<std::size_t>(i)];
    return result;
}

std::size_t BinaryList::offset(Object object) const {
    return number(tableStart_ + std::size_t{object} * static_cast<std::size_t>(offsetWidth_), offsetWidth_);
}

std::optional<BinaryList::Head> BinaryList::head(std::size_t at) const {
    if (at < 8 || at >= tableStart_) return std::nullopt;
    const std::uint8_t marker = bytes_[at];
    Head result{static_cast<std::uint8_t>(marker >> 4), static_cast<std::uint8_t>(marker & 0x0F), 0, at + 1,
                0};
    std::uint64_t unit = 1;
    switch (result.kind) {
        case Simple:
            if (marker != 0x08 && marker != 0x09) return std::nullopt;
            break;
        case Integer:
            if (result.detail > 4) return std::nullopt;
            result.size = 1U << result.detail;
            break;
        case Real:
            if (result.detail != 2 && result.detail != 3) return std::nullopt;
            result.size = 1U << result.detail;
            break;
        case Date:
            if (result.detail != 3) return std::nullopt;
            result.size = 8;
            break;
        case Uid:
            if (result.detail > 7) return std::nullopt;
            result.size = result.detail + 1U;
            break;
        case Bytes:
        case Ascii:
        case Utf16:
        case Array:
        case Dictionary: {
            result.size = result.detail;
            if (result.detail == 0x0F) {
                // The size follows as an integer object of its own.
                if (result.payload >= tableStart_ || bytes_[result.payload] >> 4 != Integer)
                    return std::nullopt;
                const int power = bytes_[result.payload] & 0x0F;
                const std::size_t sizeWidth = std::size_t{1} << power;
                if (power > 3 || tableStart_ - result.payload - 1 < sizeWidth) return std::nullopt;
                result.size = number(result.payload + 1, static_cast<int>(sizeWidth));
                result.payload += 1 + sizeWidth;
            }
            const auto width = static_cast<std::uint64_t>(referenceWidth_);
            if (result.kind == Utf16) unit = 2;
            if (result.kind == Array) unit = width;
            if (result.kind == Dictionary) unit = 2 * width;
            break;
        }
        default:
            return std::nullopt;
    }
    if (result.size > (tableStart_ - result.payload) / unit) return std::nullopt;
    result.end = result.payload + static_cast<std::size_t>(result.size * unit);
    return result;
}

bool BinaryList::isDictionary(Object object) const {
    return bytes_[offset(object)] >> 4 == Dictionary;
}

bool BinaryList::isArray(Object object) const {
    return bytes_[offset(object)] >> 4 == Array;
}

bool BinaryList::isNumber(Object object) const {
    const int kind = bytes_[offset(object)] >> 4;
    return kind == Integer || kind == Real;
}

std::size_t BinaryList::pairCount(Object dictionary) const {
    return isDictionary(dictionary) ? static_cast<std::size_t>(head(offset(dictionary))->size) : 0;
}

std::vector<BinaryList::Pair> BinaryList::pairs(Object object) const {
    std::vector<Pair> result;
    if (!isDictionary(object)) return result;
    const Head dictionary = *head(offset(object));
    const auto width = static_cast<std::size_t>(referenceWidth_);
    result.reserve(dictionary.size);
    for (std::size_t i = 0; i < dictionary.size; ++i) {
        result.push_back({reference(dictionary.payload + i * width),
                          reference(dictionary.payload + (dictionary.size + i) * width)});
    }
    return result;
}

std::vector<BinaryList::Object> BinaryList::elements(Object object) const {
    std::vector<Object> result;
    if (!isArray(object)) return result;
    const Head array = *head(offset(object));
    result.reserve(array.size);
    for (std::size_t at = array.payload; at < array.end; at += static_cast<std::size_t>(referenceWidth_)) {
        result.push_back(reference(at));
    }
    return result;
}

std::size_t BinaryList::elementCount(Object array) const {
    return isArray(array) ? static_cast<std::size_t>(head(offset(array))->size) : 0;
}

BinaryList::Object BinaryList::element(Object array, std::size_t position) const {
    return reference(head(offset(array))->payload + position * static_cast<std::size_t>(referenceWidth_));
}

std::optional<BinaryList::Object> BinaryList::find(Object dictionary, std::string_view key) const {
    if (!isDictionary(dictionary)) return std::nullopt;
    const Head entries = *head(offset(dictionary));
    const auto width = static_cast<std::size_t>(referenceWidth_);
    for (std::size_t i = entries.size; i-- > 0;) {
        if (textIs(reference(entries.payload + i * width), key)) {
            return reference(entries.payload + (entries.size + i) * width);
        }
    }
    return std::nullopt;
}

bool BinaryList::textIs(Object object, std::string_view text) const {
    const Head found = *head(offset(object));
    // A text has no fewer bytes than it has units of 16 bits.
    if (found.kind == Utf16) return found.size <= text.size() && string(object) == text;
    if (found.kind != Ascii) return false;
    const auto payload = bytes_.begin() + static_cast<std::ptrdiff_t>(found.payload);
    return found.size == text.size() && std::equal(text.begin(), text.end(), payload);
}

bool BinaryList::isString(Object object) const {
    const int kind = bytes_[offset(object)] >> 4;
    return kind == Ascii || kind == Utf16;
}

std::optional<std::string> BinaryList::string(Object object) const {
    const Head text = *head(offset(object));
    if (text.kind == Ascii) {
        const auto payload = bytes_.begin() + static_cast<std::ptrdiff_t>(text.payload);
        return std::string(payload, payload + static_cast<std::ptrdiff_t>(text.size));
    }
    if (text.kind != Utf16) return std::nullopt;
    std::string result;
    for (std::size_t at = text.payload; at < text.end; at += 2) {
        auto character = static_cast<std::uint32_t>(number(at, 2));
        if (character >= 0xD800 && character < 0xDC00) {
            at += 2;
            const auto low = static_cast<std::uint32_t>(number(at, 2));
            character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
        }
        appendUtf8(result, character);
    }
    return result;
}

Value BinaryList::integerValue(const Head& integer) const {
    // Short ones are unsigned; eight bytes are signed; sixteen hold what is beyond a signed one.
    if (integer.size < 8) return number(integer.payload, static_cast<int>(integer.size));
    const std::uint64_t low = number(integer.end - 8, 8);
    if (integer.size == 8 || number(integer.payload, 8) != 0) return std::bit_cast<std::int64_t>(low);
    return low;
}

Value BinaryList::value(Object object) const {
    const Head found = *head(offset(object));
    const auto payload = bytes_.begin() + static_cast<std::ptrdiff_t>(found.payload);
    switch (found.kind) {
        case Integer:
            return integerValue(found);
        case Real:
            if (found.size == 4)
                return std::bit_cast<float>(static_cast<std::uint32_t>(number(found.payload, 4)));
            return std::bit_cast<double>(number(found.payload, 8));
        case Date:
            return platform::Date{std::bit_cast<double>(number(found.payload, 8))};
        case Bytes:
            return Data(payload, payload + static_cast<std::ptrdiff_t>(found.size));
        case Ascii:
        case Utf16:
            return *string(object);
        case Uid:
            return platform::Dictionary{{"CF$UID", number(found.payload, static_cast<int>(found.size))}};
        case Array: {
            platform::Array array;
            for (const Object element : elements(object)) array.push_back(value(element));
            return array;
        }
        case Dictionary: {
            platform::Dictionary dictionary;
            for (const auto& [key, entry] : pairs(object))
                dictionary.insert_or_assign(*string(key), value(entry));
            return dictionary;
        }
        default:
            return found.detail == 0x09;
    }
}

std::span<const std::uint8_t> BinaryList::encoded(Object object) const {
    const std::size_t start = offset(object);
    return std::span(bytes_).subspan(start, head(start)->end - start);
}

}  // namespace platform
