// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryList.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "platform/foundation/BinaryListCheck.h"
#include "platform/foundation/BinaryListValues.h"
#include "platform/foundation/Unicode.h"

namespace platform {

using Format = BinaryListFormat;
using Problem = BinaryListFault::Problem;

namespace {

/// What every version of the format begins with.
constexpr std::string_view anyVersion = Format::header.substr(0, 6);

bool beginsWith(std::span<const std::uint8_t> bytes, std::string_view text) {
    return bytes.size() >= text.size() && std::equal(text.begin(), text.end(), bytes.begin());
}

}  // namespace

bool BinaryList::recognises(std::span<const std::uint8_t> bytes) {
    return beginsWith(bytes, anyVersion);
}

Result<BinaryList> BinaryList::create(Data bytes) {
    if (bytes.size() < Format::header.size() + Format::trailerSize) {
        return std::unexpected(BinaryListFault{Problem::TooShort, bytes.size(), bytes.size()}.error());
    }
    if (!beginsWith(bytes, Format::header))
        return std::unexpected(BinaryListFault{Problem::UnknownVersion, anyVersion.size()}.error());
    BinaryList list;
    list.bytes_ = std::move(bytes);
    list.readTrailer();
    BinaryListCheck check(list);
    if (const auto fault = check.run()) return std::unexpected(fault->error());
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
    const std::size_t trailer = bytes_.size() - Format::trailerSize;
    offsetWidth_ = bytes_[trailer + Format::offsetWidthAt];
    referenceWidth_ = bytes_[trailer + Format::referenceWidthAt];
    // The check compares them at their full width before anything relies on them.
    count_ = static_cast<Object>(number(trailer + Format::countAt, 8));
    root_ = static_cast<Object>(number(trailer + Format::rootAt, 8));
    tableStart_ = number(trailer + Format::tableAt, 8);
}

BinaryList::Checked<BinaryList::Head> BinaryList::checkedHead(std::size_t at) const {
    const std::uint8_t marker = bytes_[at];
    const std::uint8_t detail = marker & 0x0F;
    const auto fault = [&](Problem problem) { return std::unexpected(BinaryListFault{problem, at, marker}); };
    switch (Format::kindOf(marker)) {
        case Kind::Simple:
            if (marker == Format::nullMarker) return fault(Problem::Null);
            if (marker != Format::falseMarker && marker != Format::trueMarker) break;
            return fixedHead(at, 0, Problem::UnknownMarker);
        case Kind::Integer:
            if (detail > 4) break;
            return fixedHead(at, std::size_t{1} << detail, Problem::IntegerCutOff);
        case Kind::Real:
            if (detail != 2 && detail != 3) break;
            return fixedHead(at, std::size_t{1} << detail, Problem::RealCutOff);
        case Kind::Date:
            if (detail != 3) break;
            return fixedHead(at, 8, Problem::DateCutOff);
        case Kind::Uid:
            return fixedHead(at, detail + std::size_t{1}, Problem::UidCutOff);
        case Kind::Bytes:
        case Kind::Ascii:
            return sizedHead(at, 1);
        case Kind::Utf16:
            return sizedHead(at, 2);
        case Kind::Elements:
            return sizedHead(at, referenceWidth_);
        case Kind::Entries:
            return sizedHead(at, std::uint64_t{2} * referenceWidth_);
        case Kind::Set:
            return fault(Problem::Set);
    }
    return fault(Problem::UnknownMarker);
}

BinaryList::Checked<BinaryList::Head> BinaryList::fixedHead(std::size_t at, std::size_t size,
                                                            Problem cutOff) const {
    if (tableStart_ - at - 1 < size) return std::unexpected(BinaryListFault{cutOff, at});
    return Head{Format::kindOf(bytes_[at]), bytes_[at], size, at + 1, at + 1 + size};
}

BinaryList::Checked<BinaryList::Head> BinaryList::sizedHead(std::size_t at, std::uint64_t unit) const {
    const auto fault = [](Problem problem, std::size_t place, std::uint64_t detail = 0) {
        return std::unexpected(BinaryListFault{problem, place, detail});
    };
    Head head{Format::kindOf(bytes_[at]), bytes_[at], bytes_[at] & 0x0FU, at + 1, 0};
    if (head.size == Format::sizeFollows) {
        if (head.payload >= tableStart_) return fault(Problem::SizeMissing, at);
        const std::uint8_t marker = bytes_[head.payload];
        if (Format::kindOf(marker) != Kind::Integer || (marker & 0x0F) > 4)
            return fault(Problem::SizeNoInteger, head.payload);
        const std::size_t width = std::size_t{1} << (marker & 0x0F);
        const std::size_t start = head.payload + 1;
        if (tableStart_ - start < width) return fault(Problem::SizeCutOff, start);
        head.payload = start + width;
        head.size = number(head.payload - std::min<std::size_t>(width, 8), std::min<std::size_t>(width, 8));
        const bool isNegative = head.size >> 63 != 0;
        const std::uint64_t high = width == 16 ? number(start, 8) : 0;
        if (isNegative && (width == 8 || high == UINT64_MAX)) return fault(Problem::SizeNegative, start - 1);
        if (high != 0) return fault(Problem::SizeTooLarge, start);
    }
    if (head.size > (tableStart_ - head.payload) / unit) return fault(Problem::ReachesBeyond, at, head.size);
    head.end = head.payload + static_cast<std::size_t>(head.size * unit);
    return head;
}

std::span<const std::uint8_t> BinaryList::payload(const Head& head) const {
    return std::span(bytes_).subspan(head.payload, head.payloadBytes());
}

bool BinaryList::isNumber(Object object) const {
    const Kind found = kind(object);
    return found == Kind::Integer || found == Kind::Real;
}

bool BinaryList::isString(Object object) const {
    const Kind found = kind(object);
    return found == Kind::Ascii || found == Kind::Utf16;
}

std::size_t BinaryList::pairCount(Object dictionary) const {
    return isDictionary(dictionary) ? static_cast<std::size_t>(head(dictionary).size) : 0;
}

std::vector<BinaryList::Pair> BinaryList::pairs(Object object) const {
    std::vector<Pair> result;
    if (!isDictionary(object)) return result;
    const Head dictionary = head(object);
    result.reserve(dictionary.size);
    for (std::size_t i = 0; i < dictionary.size; ++i) {
        result.push_back({reference(dictionary.payload + i * referenceWidth_),
                          reference(dictionary.payload + (dictionary.size + i) * referenceWidth_)});
    }
    return result;
}

std::vector<BinaryList::Object> BinaryList::elements(Object object) const {
    std::vector<Object> result;
    if (!isArray(object)) return result;
    const Head array = head(object);
    result.reserve(array.size);
    for (std::size_t at = array.payload; at < array.end; at += referenceWidth_)
        result.push_back(reference(at));
    return result;
}

std::size_t BinaryList::elementCount(Object array) const {
    return isArray(array) ? static_cast<std::size_t>(head(array).size) : 0;
}

BinaryList::Object BinaryList::element(Object array, std::size_t position) const {
    return reference(head(array).payload + position * referenceWidth_);
}

std::optional<BinaryList::Object> BinaryList::find(Object dictionary, std::string_view key) const {
    if (!isDictionary(dictionary)) return std::nullopt;
    const Head entries = head(dictionary);
    for (std::size_t i = entries.size; i-- > 0;) {
        if (textIs(reference(entries.payload + i * referenceWidth_), key)) {
            return reference(entries.payload + (entries.size + i) * referenceWidth_);
        }
    }
    return std::nullopt;
}

bool BinaryList::textIs(Object object, std::string_view text) const {
    const Head found = head(object);
    // A text has no fewer bytes than it has units of 16 bits.
    if (found.kind == Kind::Utf16) return found.size <= text.size() && this->text(found) == text;
    return found.kind == Kind::Ascii && std::ranges::equal(payload(found), text);
}

std::optional<std::string> BinaryList::string(Object object) const {
    const Head found = head(object);
    if (found.kind != Kind::Ascii && found.kind != Kind::Utf16) return std::nullopt;
    return text(found);
}

std::string BinaryList::text(const Head& head) const {
    const auto bytes = payload(head);
    if (head.kind == Kind::Ascii) return {bytes.begin(), bytes.end()};
    return *utf8FromUTF16(bytes, ByteOrder::BigEndian);
}

Value BinaryList::integerValue(const Head& integer) const {
    // Short ones are unsigned; eight bytes are signed; sixteen hold what is beyond a signed one.
    if (integer.size < 8) return number(integer.payload, integer.payloadBytes());
    const std::uint64_t low = number(integer.end - 8, 8);
    if (integer.size == 8 || number(integer.payload, 8) != 0) return std::bit_cast<std::int64_t>(low);
    return low;
}

Value BinaryList::uidValue(const Head& uid) const {
    const std::size_t width = std::min<std::size_t>(uid.payloadBytes(), 8);
    return Dictionary{{"CF$UID", number(uid.end - width, width)}};
}

Value BinaryList::value(Object object) const {
    return BinaryListValues(*this, BinaryListValues::Memory::None).value(object);
}

Value BinaryList::rootValue() const {
    return BinaryListValues(*this, BinaryListValues::Memory::OfAll).value(root_);
}

std::span<const std::uint8_t> BinaryList::encoded(Object object) const {
    const std::size_t start = offset(object);
    return std::span(bytes_).subspan(start, head(object).end - start);
}

}  // namespace platform
