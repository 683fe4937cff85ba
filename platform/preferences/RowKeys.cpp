// SPDX-License-Identifier: MIT
#include "platform/preferences/RowKeys.h"

#include <algorithm>
#include <utility>

namespace platform {

void RowKeys::follow(const SpecifierList& list) {
    std::vector<KeyedRow> now;
    now.reserve(list.size());
    for (const auto& specifier : list) now.push_back({specifier, 0});
    keyRows(rows_, now);
    for (const KeyedRow& row : now) {
        if (row.specifier) row.specifier->setRowKey(row.key);
    }
    rows_ = std::move(now);
}

std::vector<RowTraits> RowKeys::traits() const {
    std::vector<RowTraits> all;
    all.reserve(rows_.size());
    for (const KeyedRow& row : rows_) {
        if (row.specifier) all.push_back(traitsOf(row));
    }
    return all;
}

RowKeys RowKeys::ofTraits(std::span<const RowTraits> traits) {
    RowKeys keys;
    keys.rows_.reserve(traits.size());
    for (const RowTraits& each : traits) keys.rows_.push_back(rowWithTraits(each));
    return keys;
}

std::optional<std::size_t> RowKeys::indexOf(RowKey key) const {
    const auto row = std::ranges::find(rows_, key, &KeyedRow::key);
    if (row == rows_.end()) return std::nullopt;
    return static_cast<std::size_t>(row - rows_.begin());
}

}  // namespace platform
