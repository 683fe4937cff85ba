// SPDX-License-Identifier: MIT
#include "settings/application/RowKeyValue.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::RowTraits;
using platform::Value;

namespace {

std::optional<std::string> textIn(const Value& value, std::string_view key) {
    const Value text = value[key];
    return text.string() != nullptr ? std::optional(*text.string()) : std::nullopt;
}

}  // namespace

Value valueOfRowKeys(const platform::RowKeys& keys) {
    Array rows;
    for (const RowTraits& row : keys.traits()) {
        Dictionary entry{{"key", row.key}, {"kind", std::to_underlying(row.kind)}};
        if (row.name) entry["name"] = *row.name;
        if (row.identifier) entry["identifier"] = *row.identifier;
        if (!row.userInfo.empty()) entry["userInfo"] = row.userInfo;
        rows.emplace_back(std::move(entry));
    }
    return rows;
}

platform::RowKeys rowKeysOfValue(const Value& value) {
    std::vector<RowTraits> rows;
    if (const Array* entries = value.array()) {
        for (const Value& entry : *entries) {
            const std::uint64_t key = numberIn(entry, "key");
            if (key == 0) continue;
            const auto kind = static_cast<platform::PSCellType>(entry["kind"].integer().value_or(0));
            rows.push_back({key, kind, textIn(entry, "name"), textIn(entry, "identifier"),
                            entry["userInfo"].stringOr()});
        }
    }
    return platform::RowKeys::ofTraits(rows);
}

std::uint64_t numberIn(const Value& value, std::string_view key) {
    return value[key].unsignedInteger().value_or(0);
}

}  // namespace settings
