// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

#include "platform/foundation/BinaryListBuilder.h"
#include "platform/foundation/BinaryListScalar.h"
#include "platform/foundation/KnownScalars.h"
#include "platform/foundation/Value.h"

namespace platform {

/// Writes a value that PropertyListChecker found writable as a binary property list, in time linear in its
/// size.
///
/// Equal values give equal bytes. Equal strings, data, numbers and dates are stored once; containers as often
/// as they occur, each before what it holds. Integers take 1, 2 or 4 bytes unsigned, 8 signed (also when
/// negative), 16 above the signed range; reals always 8; offsets and references as few bytes as suffice,
/// three included.
class BinaryPropertyListWriter {
  public:
    static Data write(const Value& value);

  private:
    using Object = BinaryListBuilder::Object;
    /// Its references lie in references_, for a dictionary first the keys', then the values'.
    struct Container {
        BinaryListFormat::Kind kind;
        std::uint32_t referenceCount;
        std::size_t firstReference;

        std::size_t headSize() const;
    };
    using Entry = std::variant<BinaryListScalar, Container>;

    /// Gives the value and all that it holds their numbers, which tell how wide a reference has to be.
    Object number(const Value& value);
    Object number(const BinaryListScalar& scalar);
    Object numberContainer(const Value& container);
    Object append(Entry entry);
    /// Of the list as it is when all have their numbers.
    BinaryListBuilder::Plan plan() const;
    std::size_t sizeOf(const Entry& entry, std::size_t referenceWidth) const;
    Data encode() const;

    std::vector<Entry> entries_;
    std::vector<Object> references_;
    KnownScalars known_;
    /// Of all entries, without the references.
    std::size_t size_ = 0;
};

}  // namespace platform
