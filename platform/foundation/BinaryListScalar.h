// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/foundation/BinaryListFormat.h"
#include "platform/foundation/Value.h"

namespace platform {

/// A string, data, a number, a date or a truth, as a binary property list is to hold it. The content of
/// strings and data stays the value's own, which must outlive this.
class BinaryListScalar {
  public:
    /// A value that PropertyListChecker found writable and that is no container.
    explicit BinaryListScalar(const Value& value);
    explicit BinaryListScalar(std::string_view text);

    /// Whether they are encoded alike: of one type, and equal to the bit.
    bool operator==(const BinaryListScalar& other) const;
    std::size_t hash() const;

    /// How many bytes the object takes.
    std::size_t encodedSize() const;
    void appendTo(Data& bytes) const;

  private:
    using Kind = BinaryListFormat::Kind;

    BinaryListScalar(std::uint8_t marker, std::uint64_t number) : marker_(marker), number_(number) {}
    static BinaryListScalar of(const Value& value);
    bool hasContent() const { return content_ != nullptr; }
    std::string_view content() const { return {content_, static_cast<std::size_t>(number_)}; }

    /// Whole for numbers, dates and truths. Of strings, whose kind depends on what they hold, and of data
    /// only the upper half counts.
    std::uint8_t marker_;
    /// The number as bits, or how many bytes the content has.
    std::uint64_t number_;
    const char* content_ = nullptr;
};

}  // namespace platform
