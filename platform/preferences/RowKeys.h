// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "platform/preferences/RowMatching.h"

namespace platform {

/// The keys of a list's rows, by which a row is named over time: its place changes with every row above it,
/// and its specifier with every rebuild. A row that is still the same one, as keyRows() tells it, keeps its
/// key. Main thread.
class RowKeys {
  public:
    /// Takes over the rows as they are now. They are held until the next call, to be compared then.
    void follow(const SpecifierList& list);
    /// What the rows are known by, in their order.
    std::vector<RowTraits> traits() const;
    /// The keys of rows of another process, to be followed by a list of this one.
    static RowKeys ofTraits(std::span<const RowTraits> traits);
    /// 0 out of range.
    RowKey keyAt(std::size_t index) const { return index < rows_.size() ? rows_[index].key : 0; }
    /// Empty when no row has the key (any more).
    std::optional<std::size_t> indexOf(RowKey key) const;

  private:
    std::vector<KeyedRow> rows_;
};

}  // namespace platform
