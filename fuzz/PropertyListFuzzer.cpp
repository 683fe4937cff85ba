// SPDX-License-Identifier: MIT
// Whatever is read as a property list can be written as a binary one and reads back equal; written as XML,
// where XML can hold it, it reads back as what XML keeps of it.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "platform/foundation/PropertyList.h"

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto value = PropertyListSerialization::propertyListWithData(Data(bytes, bytes + size));
    if (!value) {
        require(!value.error().localizedDescription.empty(), "an error says something");
        return 0;
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
