// SPDX-License-Identifier: MIT
#include "platform/foundation/StringTable.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/StringTableParser.h"
#include "platform/foundation/Unicode.h"

namespace platform {

namespace {

std::optional<ByteOrder> utf16Order(const Data& data) {
    if (data.size() < 2) return std::nullopt;
    if (data[0] == 0xFE && data[1] == 0xFF) return ByteOrder::BigEndian;
    if (data[0] == 0xFF && data[1] == 0xFE) return ByteOrder::LittleEndian;
    return std::nullopt;
}

Result<StringTable> tableFromPropertyList(const Data& data) {
    const Result<Value> list = PropertyListSerialization::propertyListWithData(data);
    if (!list) return std::unexpected(list.error());
    const Dictionary* entries = list->dictionary();
    if (entries == nullptr) return failure("The string table's property list is no dictionary.");
    StringTable table;
    for (const auto& [key, value] : *entries) {
        const std::string* text = value.string();
        if (text == nullptr)
            return failure("The string table's value for the key \"" + key + "\" is no string.");
        table.emplace(key, *text);
    }
    return table;
}

}  // namespace

Result<StringTable> parseStringTable(const Data& data) {
    if (const auto order = utf16Order(data)) {
        const auto text = utf8FromUTF16(std::span(data).subspan(2), *order);
        if (!text) return failure("The string table is damaged: it is no well-formed UTF-16.");
        return StringTableParser::parse(*text);
    }
    if (PropertyListSerialization::formatOfData(data)) return tableFromPropertyList(data);
    std::string_view text(reinterpret_cast<const char*>(data.data()), data.size());
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    return StringTableParser::parse(text);
}

}  // namespace platform
