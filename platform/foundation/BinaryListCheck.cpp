// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryListCheck.h"

#include <algorithm>

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/Unicode.h"

namespace platform {

using Format = BinaryListFormat;

std::optional<BinaryListFault> BinaryListCheck::run() {
    if (!checkTrailer()) return fault_;
    extents_.resize(list_.count_);
    check(list_.root_, list_.bytes_.size() - Format::trailerSize + Format::rootAt, 0);
    return fault_;
}

bool BinaryListCheck::fail(Problem problem, std::size_t at, std::uint64_t number) {
    fault_ = BinaryListFault{problem, at, number};
    return false;
}

std::uint64_t BinaryListCheck::bound() const {
    return expansionFactor * list_.bytes_.size() + expansionAllowance;
}

bool BinaryListCheck::checkTrailer() {
    const std::size_t size = list_.bytes_.size();
    const std::size_t trailer = size - Format::trailerSize;
    const auto isWidth = [](int bytes) { return bytes >= 1 && bytes <= 8; };
    if (!isWidth(list_.offsetWidth_)) return fail(Problem::OffsetWidth, trailer + Format::offsetWidthAt);
    if (!isWidth(list_.referenceWidth_))
        return fail(Problem::ReferenceWidth, trailer + Format::referenceWidthAt);
    if (list_.tableStart_ < Format::header.size() || list_.tableStart_ > trailer)
        return fail(Problem::TableOutside, trailer + Format::tableAt);
    const std::uint64_t count = list_.number(trailer + Format::countAt, 8);
    const std::uint64_t room = (trailer - list_.tableStart_) / list_.offsetWidth_;
    if (count == 0 || count > room || count > BinaryList::maximumCount)
        return fail(Problem::ObjectCount, trailer + Format::countAt);
    // An object has a byte and an offset of four in a large list. Far more of them only a list has whose
    // objects share their bytes, made to exhaust memory; a small one cannot.
    constexpr std::uint64_t bytesEach = 5;
    if (size > BinaryList::largeSize && count > size / bytesEach + 1)
        return fail(Problem::TooManyObjects, trailer + Format::countAt);
    if (list_.number(trailer + Format::rootAt, 8) >= count)
        return fail(Problem::RootMissing, trailer + Format::rootAt);
    return true;
}

// `depth` tells how many containers the object is inside of, `from` where the reference to it stands.
bool BinaryListCheck::check(Object object, std::size_t from, int depth) {
    constexpr int maximumDepth = PropertyListSerialization::maximumDepth;
    Extent& extent = extents_[object];
    if (extent.cost != 0) {
        if (extent.open != 0) return fail(Problem::HoldsItself, list_.offset(object));
        // It was met at another depth before, so its height counts as well.
        if (depth + static_cast<int>(extent.height) <= maximumDepth) return true;
        return fail(Problem::NestsTooDeep, from, maximumDepth);
    }
    const std::size_t at = list_.offset(object);
    if (at < Format::header.size() || at >= list_.tableStart_)
        return fail(Problem::ObjectOutside, list_.tableStart_ + std::size_t{object} * list_.offsetWidth_);
    const auto head = list_.checkedHead(at);
    if (!head) {
        fault_ = head.error();
        return false;
    }
    reachableBytes_ += head->end - at + list_.offsetWidth_;
    if (reachableBytes_ > bound()) return fail(Problem::SharedBytes, at);
    extent.cost = 1;
    if (!isContainer(head->kind)) return checkContent(*head, at);
    if (depth >= maximumDepth) return fail(Problem::NestsTooDeep, at, maximumDepth);
    extent.open = 1;
    return checkChildren(*head, extent, depth + 1);
}

bool BinaryListCheck::checkContent(const Head& head, std::size_t at) {
    const auto payload = list_.payload(head);
    if (head.kind == Kind::Ascii) {
        const auto foreign = std::ranges::find_if(payload, [](std::uint8_t byte) { return byte >= 0x80; });
        if (foreign == payload.end()) return true;
        const auto position = static_cast<std::size_t>(foreign - payload.begin());
        return fail(Problem::ForeignByte, head.payload + position, *foreign);
    }
    if (head.kind == Kind::Utf16)
        return isUTF16(payload, ByteOrder::BigEndian) || fail(Problem::HalfSurrogate, at);
    if (head.kind == Kind::Integer && head.size == 16) {
        const std::uint64_t high = list_.number(head.payload, 8);
        const bool isNegative = list_.number(head.payload + 8, 8) >> 63 != 0;
        return high == 0 || (high == UINT64_MAX && isNegative) ||
               fail(Problem::IntegerTooLarge, head.payload);
    }
    if (head.kind == Kind::Uid && head.size > 8) {
        const auto leading = payload.first(payload.size() - 8);
        return std::ranges::all_of(leading, [](std::uint8_t byte) { return byte == 0; }) ||
               fail(Problem::UidTooLarge, at);
    }
    return true;
}

bool BinaryListCheck::checkChildren(const Head& container, Extent& extent, int depth) {
    const std::size_t width = list_.referenceWidth_;
    std::uint64_t cost = 1;
    std::size_t first = container.payload;
    if (container.kind == Kind::Entries) {
        if (!checkKeys(container, depth)) return false;
        cost += keysCost_;
        first += keys_.size();
    }
    const std::uint64_t bound = this->bound();
    if (cost > bound) return fail(Problem::Unfolds, container.payload);
    unsigned height = 0;
    for (std::size_t at = first; at < container.end; at += width) {
        const std::uint64_t child = list_.number(at, width);
        if (child >= list_.count_) return fail(Problem::ObjectMissing, at);
        if (!check(static_cast<Object>(child), at, depth)) return false;
        const Extent& held = extents_[child];
        cost += held.cost;
        height = std::max<unsigned>(height, held.height);
        if (cost > bound) return fail(Problem::Unfolds, at);
    }
    extent = {cost & Extent::largestCost, (height + 1) & Extent::largestHeight, 0};
    return true;
}

// Records mostly have the keys of the record before.
bool BinaryListCheck::checkKeys(const Head& dictionary, int depth) {
    const std::size_t width = list_.referenceWidth_;
    const auto keys = list_.payload(dictionary).first(dictionary.payloadBytes() / 2);
    if (std::ranges::equal(keys, keys_)) return true;
    std::uint64_t cost = 0;
    for (std::size_t at = dictionary.payload; at < dictionary.payload + keys.size(); at += width) {
        const std::uint64_t key = list_.number(at, width);
        if (key >= list_.count_) return fail(Problem::ObjectMissing, at);
        if (!check(static_cast<Object>(key), at, depth)) return false;
        if (!list_.isString(static_cast<Object>(key))) return fail(Problem::KeyNoString, at);
        cost += 1 + list_.head(static_cast<Object>(key)).payloadBytes();
    }
    keys_ = keys;
    keysCost_ = cost;
    return true;
}

}  // namespace platform
