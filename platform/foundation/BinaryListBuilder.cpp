// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryListBuilder.h"

#include <string_view>

#include "platform/foundation/PropertyList.h"

namespace platform {

namespace {

constexpr std::string_view header = "bplist00";
constexpr int width = 4;
constexpr std::size_t trailerSize = 32;
// What a change usually adds to a list; more than that only costs a second allocation.
constexpr std::size_t roomForChange = 4096;

constexpr std::uint8_t arrayMarker = 0xA0;
constexpr std::uint8_t dictionaryMarker = 0xD0;
constexpr std::uint8_t sizeFollows = 0x0F;
constexpr std::uint8_t fourByteInteger = 0x12;

void append(Data& bytes, std::uint64_t number, int byteCount) {
    for (int shift = 8 * (byteCount - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
}

}  // namespace

BinaryListBuilder::BinaryListBuilder() : bytes_(header.begin(), header.end()) {}

BinaryListBuilder::BinaryListBuilder(const BinaryList& list, Object count) {
    const Data& bytes = list.bytes();
    const auto tableStart = bytes.begin() + static_cast<std::ptrdiff_t>(list.tableStart());
    const std::size_t end = count < list.count() ? list.offset(count) : list.tableStart();
    // finish() puts the table behind the objects: with room for both, nothing is copied twice.
    bytes_.reserve(bytes.size() + roomForChange);
    bytes_.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(end));
    table_.reserve(std::size_t{list.count()} * width + roomForChange);
    table_.assign(tableStart, tableStart + static_cast<std::ptrdiff_t>(std::size_t{count} * width));
}

bool BinaryListBuilder::continuable(const BinaryList& list) {
    return list.offsetWidth() == width && list.referenceWidth() == width;
}

BinaryListBuilder::Object BinaryListBuilder::begin() {
    append(table_, bytes_.size(), width);
    return static_cast<Object>(table_.size() / width - 1);
}

void BinaryListBuilder::appendHead(std::uint8_t marker, std::uint64_t size) {
    if (size < sizeFollows) {
        bytes_.push_back(static_cast<std::uint8_t>(marker | size));
        return;
    }
    bytes_.push_back(marker | sizeFollows);
    bytes_.push_back(fourByteInteger);
    append(bytes_, size, 4);
}

Result<BinaryListBuilder::Object> BinaryListBuilder::add(const Value& value) {
    auto bytes = PropertyListSerialization::dataWithPropertyList(value, PropertyListFormat::Binary);
    if (!bytes) return std::unexpected(bytes.error());
    const BinaryList list = BinaryList::trusted(*std::move(bytes));
    Copies copies(list);
    return copy(list.root(), copies);
}

BinaryListBuilder::Object BinaryListBuilder::addArray(std::span<const Object> elements) {
    const Object array = begin();
    appendHead(arrayMarker, elements.size());
    for (const Object element : elements) append(bytes_, element, width);
    return array;
}

BinaryListBuilder::Object BinaryListBuilder::addDictionary(std::span<const BinaryList::Pair> pairs) {
    const Object dictionary = begin();
    appendHead(dictionaryMarker, pairs.size());
    for (const BinaryList::Pair& pair : pairs) append(bytes_, pair.key, width);
    for (const BinaryList::Pair& pair : pairs) append(bytes_, pair.value, width);
    return dictionary;
}

BinaryListBuilder::Object BinaryListBuilder::copy(Object object, Copies& copies) {
    if (copies.made_[object] != Copies::none) return copies.made_[object];
    const BinaryList& source = copies.source_;
    Object made = 0;
    if (source.isArray(object)) {
        std::vector<Object> elements = source.elements(object);
        for (Object& element : elements) element = copy(element, copies);
        made = addArray(elements);
    } else if (source.isDictionary(object)) {
        std::vector<BinaryList::Pair> pairs = source.pairs(object);
        for (auto& [key, value] : pairs) {
            key = copy(key, copies);
            value = copy(value, copies);
        }
        made = addDictionary(pairs);
    } else {
        const auto encoded = source.encoded(object);
        made = begin();
        bytes_.insert(bytes_.end(), encoded.begin(), encoded.end());
    }
    copies.made_[object] = made;
    return made;
}

Result<Data> BinaryListBuilder::finish(Object root) && {
    const std::size_t tableStart = bytes_.size();
    if (tableStart > UINT32_MAX) return failure("The property list would become too large.");
    bytes_.reserve(tableStart + table_.size() + trailerSize);
    bytes_.insert(bytes_.end(), table_.begin(), table_.end());
    append(bytes_, 0, 6);
    append(bytes_, width, 1);
    append(bytes_, width, 1);
    append(bytes_, table_.size() / width, 8);
    append(bytes_, root, 8);
    append(bytes_, tableStart, 8);
    return std::move(bytes_);
}

}  // namespace platform
