// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/foundation/BinaryList.h"
#include "platform/foundation/BinaryListScalar.h"
#include "platform/foundation/KnownScalars.h"

namespace platform {

/// Makes a binary property list out of objects of another one and of new values. Unless it is told otherwise,
/// offsets, references and the sizes of containers have four bytes, so that a list can be continued without
/// renumbering what is there.
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

    /// What a list will be that is known to its end: so it takes the fewest bytes.
    struct Plan {
        std::size_t offsetWidth = 4;
        std::size_t referenceWidth = 4;
        /// How many objects there will be, and where their bytes end.
        std::size_t objectCount = 0;
        std::size_t end = 0;
    };

    /// Begins an empty list.
    BinaryListBuilder();
    explicit BinaryListBuilder(const Plan& plan);
    /// Continues a list: its first `count` objects keep their numbers. They must not refer to later ones,
    /// must come before them in the bytes, and the list's widths must be continuable().
    BinaryListBuilder(const BinaryList& list, Object count);
    static bool continuable(const BinaryList& list);

    /// Adds a value with all that it holds; equal scalars in it are stored once. Fails for what property
    /// lists cannot hold.
    Result<Object> add(const Value& value);
    /// Adds the elements of an array one by one, without the array; equal scalars in any of them are stored
    /// once.
    Result<std::vector<Object>> addElements(const Value& array);
    /// Adds a container of objects that are in the list.
    Object addArray(std::span<const Object> elements);
    Object addDictionary(std::span<const BinaryList::Pair> pairs);
    /// The same of a dictionary's keys and, in the same order, its values behind them.
    Object addDictionary(std::span<const Object> keysAndValues);
    Object addScalar(const BinaryListScalar& scalar);
    /// Copies an object of the source with all that it refers to; what was copied before is shared.
    Object copy(Object object, Copies& copies);

    /// The list as bytes. Fails when it is longer than its offsets can say.
    Result<Data> finish(Object root) &&;

  private:
    using Kind = BinaryListFormat::Kind;
    enum class Sizes : std::uint8_t { FourBytes, Fewest };

    Object addChecked(const Value& value, KnownScalars& known);
    Object addChecked(const BinaryListScalar& scalar, KnownScalars& known);
    Object nextObject() const { return static_cast<Object>(table_.size() / offsetWidth_); }
    Object begin();
    Object beginContainer(Kind kind, std::uint64_t size);
    /// Room for so many references at the end.
    std::uint8_t* appendReferences(std::size_t count);

    Data bytes_;
    Data table_;
    std::size_t offsetWidth_ = 4;
    std::size_t referenceWidth_ = 4;
    Sizes sizes_ = Sizes::FourBytes;
    bool isTooLong_ = false;
};

}  // namespace platform
