// SPDX-License-Identifier: MIT
// Whatever is read as a property list can be written as a binary one and reads back equal; written as XML,
// where XML can hold it, it reads back as what XML keeps of it. A binary list that stays bytes answers as the
// values do that are read from it, and goes into another one, copied or added as values, with all that it
// holds.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "platform/foundation/BinaryList.h"
#include "platform/foundation/BinaryListBuilder.h"
#include "platform/foundation/PropertyList.h"

using platform::BinaryList;
using platform::BinaryListBuilder;
using platform::Data;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Value;

namespace {

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

Value readAgain(const Data& data) {
    const auto value = PropertyListSerialization::propertyListWithData(data);
    if (!value) std::fprintf(stderr, "%s\n", value.error().localizedDescription.c_str());
    require(value.has_value(), "what was written can be read");
    return *value;
}

BinaryList checked(platform::Result<Data> bytes) {
    require(bytes.has_value(), "a list can be finished");
    auto list = BinaryList::create(*std::move(bytes));
    if (!list) std::fprintf(stderr, "%s\n", list.error().localizedDescription.c_str());
    require(list.has_value(), "what was built is sound");
    return *std::move(list);
}

void checkLookUps(const BinaryList& list, const Value& root) {
    require(list.value(list.root()) == root, "without a memory it is the same value");
    require(list.isArray(list.root()) == (root.array() != nullptr), "an array is one");
    // A UID becomes one as well.
    require(!list.isDictionary(list.root()) || root.dictionary() != nullptr, "a dictionary is one");
    if (const auto* elements = root.array()) {
        require(list.elementCount(list.root()) == elements->size(), "all elements are there");
        for (std::size_t i = 0; i < elements->size(); ++i)
            require(list.value(list.element(list.root(), i)) == (*elements)[i],
                    "each element is the value's");
    }
    if (!list.isDictionary(list.root())) return;
    for (const auto& [name, entry] : *root.dictionary()) {
        const auto found = list.find(list.root(), name);
        require(found && list.value(*found) == entry, "a key leads to its last value");
    }
}

void checkBuilding(const BinaryList& list, const Value& root) {
    BinaryListBuilder copied;
    BinaryListBuilder::Copies copies(list);
    const auto copy = copied.copy(list.root(), copies);
    const BinaryList first = checked(std::move(copied).finish(copy));
    require(first.rootValue() == root, "a copy holds the same");
    require(first.reachableBytes() + platform::BinaryListFormat::header.size() +
                    platform::BinaryListFormat::trailerSize ==
                first.bytes().size(),
            "only what is reached is copied");

    BinaryListBuilder longer(first, first.count());
    const auto added = longer.add(root);
    require(added.has_value(), "what was read can be added");
    const BinaryListBuilder::Object both[] = {copy, *added};
    const BinaryList second = checked(std::move(longer).finish(longer.addArray(both)));
    require(second.value(copy) == root && second.value(*added) == root, "a longer list holds both");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const Data data(bytes, bytes + size);
    const auto value = PropertyListSerialization::propertyListWithData(data);
    if (!value) {
        require(!value.error().localizedDescription.empty(), "an error says something");
        return 0;
    }
    if (BinaryList::recognises(data)) {
        const BinaryList list = checked(data);
        checkLookUps(list, *value);
        checkBuilding(list, *value);
    }
    const auto binary = PropertyListSerialization::dataWithPropertyList(*value, PropertyListFormat::Binary);
    require(binary.has_value(), "what was read can be written");
    const Value again = readAgain(*binary);
    require(again == *value, "a binary list reads back equal");
    require(PropertyListSerialization::dataWithPropertyList(again, PropertyListFormat::Binary) == binary,
            "equal values give equal bytes");

    const auto xml = PropertyListSerialization::dataWithPropertyList(*value, PropertyListFormat::XML);
    if (!xml) return 0;
    // XML drops fractions of seconds and payloads of NaN; what it wrote once it then keeps.
    const Value kept = readAgain(*xml);
    require(PropertyListSerialization::dataWithPropertyList(kept, PropertyListFormat::XML) == xml,
            "an XML list reads back as it was written");
    return 0;
}
