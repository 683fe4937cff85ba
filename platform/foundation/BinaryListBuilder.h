// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/foundation/BinaryList.h"

namespace platform {

/// Makes a binary property list out of objects of another one and of new values. Offsets and references have
/// four bytes, so that a list can be continued without renumbering what is there.
class BinaryListBuilder {
  public:
    using Object = BinaryList::Object;

    /// Which object of a source stands for which of the list being made; filled by copy().
    class Copies {
      public:
        explicit Copies(const BinaryList& source) : source_(source), made_(source.count(), none) {}

      private:
        friend class BinaryListBuilder;
        static constexpr Object none = UINT32_MAX;

        const BinaryList& source_;
        std::vector<Object> made_;
    };

    /// Begins an empty list.
    BinaryListBuilder();
    /// Continues a list: its first `count` objects keep their numbers. They must not refer to later ones,
    /// must come before them in the bytes, and the list's widths must be continuable().
    BinaryListBuilder(const BinaryList& list, Object count);
    static bool continuable(const BinaryList& list);

    /// Adds a value with all that it holds. Fails for what property lists cannot hold.
    Result<Object> add(const Value& value);
    /// Adds a container of objects that are in the list already.
    Object addArray(std::span<const Object> elements);
    Object addDictionary(std::span<const BinaryList::Pair> pairs);
    /// Copies an object of the source with all that it refers to; what was copied before is shared.
    Object copy(Object object, Copies& copies);

    /// The list as bytes. Fails when it is longer than its offsets can say.
    Result<Data> finish(Object root) &&;

  private:
    Object begin();
    void appendHead(std::uint8_t kind, std::uint64_t size);

    Data bytes_;
    Data table_;
};

}  // namespace platform
