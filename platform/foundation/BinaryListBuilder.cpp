// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryListBuilder.h"

#include "platform/foundation/BinaryListEncoding.h"
#include "platform/foundation/PropertyListChecker.h"

namespace platform {

using Encoding = BinaryListEncoding;
using Format = BinaryListFormat;

namespace {

constexpr std::size_t width = 4;
// What a change usually adds to a list; more than that only costs a second allocation.
constexpr std::size_t roomForChange = 4096;

}  // namespace

BinaryListBuilder::BinaryListBuilder() : bytes_(Format::header.begin(), Format::header.end()) {}

BinaryListBuilder::BinaryListBuilder(const Plan& plan)
    : offsetWidth_(plan.offsetWidth), referenceWidth_(plan.referenceWidth), sizes_(Sizes::Fewest) {
    table_.reserve(plan.objectCount * plan.offsetWidth);
    bytes_.reserve(plan.end + plan.objectCount * plan.offsetWidth + Format::trailerSize);
    bytes_.assign(Format::header.begin(), Format::header.end());
}

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

Result<BinaryListBuilder::Object> BinaryListBuilder::add(const Value& value) {
    if (const auto checked = PropertyListChecker::check(value, PropertyListFormat::Binary); !checked)
        return std::unexpected(checked.error());
    KnownScalars known;
    return addChecked(value, known);
}

Result<std::vector<BinaryListBuilder::Object>> BinaryListBuilder::addElements(const Value& array) {
    if (const auto checked = PropertyListChecker::check(array, PropertyListFormat::Binary); !checked)
        return std::unexpected(checked.error());
    KnownScalars known;
    std::vector<Object> elements;
    if (array.array() == nullptr) return elements;
    elements.reserve(array.array()->size());
    for (const Value& element : *array.array()) elements.push_back(addChecked(element, known));
    return elements;
}

BinaryListBuilder::Object BinaryListBuilder::addChecked(const Value& value, KnownScalars& known) {
    if (const Array* const array = value.array()) {
        std::vector<Object> elements;
        elements.reserve(array->size());
        for (const Value& element : *array) elements.push_back(addChecked(element, known));
        return addArray(elements);
    }
    if (const Dictionary* const dictionary = value.dictionary()) {
        std::vector<BinaryList::Pair> pairs;
        pairs.reserve(dictionary->size());
        for (const auto& [name, entry] : *dictionary) {
            const Object key = addChecked(BinaryListScalar(std::string_view(name)), known);
            pairs.push_back({key, addChecked(entry, known)});
        }
        return addDictionary(pairs);
    }
    return addChecked(BinaryListScalar(value), known);
}

BinaryListBuilder::Object BinaryListBuilder::addChecked(const BinaryListScalar& scalar, KnownScalars& known) {
    const auto object = known.find(scalar, nextObject());
    return object ? *object : addScalar(scalar);
}

BinaryListBuilder::Object BinaryListBuilder::begin() {
    if (offsetWidth_ < 8 && bytes_.size() >> (8 * offsetWidth_) != 0) isTooLong_ = true;
    const Object object = nextObject();
    Encoding::appendNumber(table_, bytes_.size(), offsetWidth_);
    return object;
}

BinaryListBuilder::Object BinaryListBuilder::beginContainer(Kind kind, std::uint64_t size) {
    const Object object = begin();
    if (sizes_ == Sizes::Fewest || size < Format::sizeFollows) {
        Encoding::appendHead(bytes_, kind, size);
    } else {
        bytes_.push_back(Format::marker(kind, Format::sizeFollows));
        bytes_.push_back(Format::integerMarker(width));
        Encoding::appendNumber(bytes_, size, width);
    }
    return object;
}

std::uint8_t* BinaryListBuilder::appendReferences(std::size_t count) {
    const std::size_t at = bytes_.size();
    bytes_.resize(at + count * referenceWidth_);
    return bytes_.data() + at;
}

BinaryListBuilder::Object BinaryListBuilder::addScalar(const BinaryListScalar& scalar) {
    const Object object = begin();
    scalar.appendTo(bytes_);
    return object;
}

BinaryListBuilder::Object BinaryListBuilder::addArray(std::span<const Object> elements) {
    const Object array = beginContainer(Kind::Elements, elements.size());
    std::uint8_t* at = appendReferences(elements.size());
    for (const Object element : elements) {
        Encoding::putNumber(at, element, referenceWidth_);
        at += referenceWidth_;
    }
    return array;
}

BinaryListBuilder::Object BinaryListBuilder::addDictionary(std::span<const BinaryList::Pair> pairs) {
    const Object dictionary = beginContainer(Kind::Entries, pairs.size());
    std::uint8_t* key = appendReferences(2 * pairs.size());
    std::uint8_t* value = key + pairs.size() * referenceWidth_;
    for (const BinaryList::Pair& pair : pairs) {
        Encoding::putNumber(key, pair.key, referenceWidth_);
        Encoding::putNumber(value, pair.value, referenceWidth_);
        key += referenceWidth_;
        value += referenceWidth_;
    }
    return dictionary;
}

BinaryListBuilder::Object BinaryListBuilder::addDictionary(std::span<const Object> keysAndValues) {
    const Object dictionary = beginContainer(Kind::Entries, keysAndValues.size() / 2);
    std::uint8_t* at = appendReferences(keysAndValues.size());
    for (const Object object : keysAndValues) {
        Encoding::putNumber(at, object, referenceWidth_);
        at += referenceWidth_;
    }
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
    if (isTooLong_) return failure("The property list would become too large.");
    const std::size_t tableStart = bytes_.size();
    const std::size_t count = nextObject();
    bytes_.reserve(tableStart + table_.size() + Format::trailerSize);
    bytes_.insert(bytes_.end(), table_.begin(), table_.end());
    const std::size_t trailer = bytes_.size();
    bytes_.resize(trailer + Format::trailerSize);
    std::uint8_t* const fields = bytes_.data() + trailer;
    fields[Format::offsetWidthAt] = static_cast<std::uint8_t>(offsetWidth_);
    fields[Format::referenceWidthAt] = static_cast<std::uint8_t>(referenceWidth_);
    Encoding::putNumber(fields + Format::countAt, count, 8);
    Encoding::putNumber(fields + Format::rootAt, root, 8);
    Encoding::putNumber(fields + Format::tableAt, tableStart, 8);
    return std::move(bytes_);
}

}  // namespace platform
