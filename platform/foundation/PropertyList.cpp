// SPDX-License-Identifier: MIT
#include "platform/foundation/PropertyList.h"

#include <string_view>

#include "platform/foundation/BinaryList.h"
#include "platform/foundation/BinaryPropertyListWriter.h"
#include "platform/foundation/PropertyListChecker.h"
#include "platform/foundation/XMLCharacters.h"
#include "platform/foundation/XMLPropertyListReader.h"
#include "platform/foundation/XMLPropertyListWriter.h"

namespace platform {

Result<PropertyListFormat> PropertyListSerialization::formatOfData(const Data& data) {
    if (data.empty()) return failure("This is no property list: it is empty.");
    if (BinaryList::recognises(data)) return PropertyListFormat::Binary;
    std::string_view text(reinterpret_cast<const char*>(data.data()), data.size());
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    while (!text.empty() && isXMLBlank(text.front())) text.remove_prefix(1);
    if (text.starts_with('<')) return PropertyListFormat::XML;
    return failure("This is no property list: it begins neither as a binary nor as an XML one.");
}

Result<Value> PropertyListSerialization::propertyListWithData(const Data& data) {
    const Result<PropertyListFormat> format = formatOfData(data);
    if (!format) return std::unexpected(format.error());
    if (*format == PropertyListFormat::XML) return XMLPropertyListReader::read(data);
    const Result<BinaryList> list = BinaryList::create(data);
    if (!list) return std::unexpected(list.error());
    return list->rootValue();
}

Result<Data> PropertyListSerialization::dataWithPropertyList(const Value& value, PropertyListFormat format) {
    if (const Result<void> checked = PropertyListChecker::check(value, format); !checked) {
        return std::unexpected(checked.error());
    }
    return format == PropertyListFormat::Binary ? BinaryPropertyListWriter::write(value)
                                                : XMLPropertyListWriter::write(value);
}

}  // namespace platform
