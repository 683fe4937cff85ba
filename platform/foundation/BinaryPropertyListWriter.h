// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "platform/foundation/Value.h"

namespace platform {

/// Writes a value that PropertyListChecker found writable as a binary property list, in time linear in its
/// size.
///
/// Equal values give equal bytes. Equal strings, data, numbers and dates are stored once; containers as often
/// as they occur. Integers take 1, 2 or 4 bytes unsigned, 8 signed (also when negative), 16 above the signed
/// range; reals always 8; offsets and references as few bytes as suffice, three included.
class BinaryPropertyListWriter {
  public:
    static Data write(const Value& value);

  private:
    using Index = std::size_t;
    /// A string or a key; data; anything else, which holds its content itself.
    using Scalar = std::variant<std::string_view, const Data*, Value>;
    /// The references of a container lie in references_, for a dictionary first the keys', then the values'.
    struct Container {
        std::uint8_t marker;
        std::size_t count;
        std::size_t firstReference;
        std::size_t referenceCount;
    };
    using Entry = std::variant<Scalar, Container>;

    Index add(const Value& value);
    Index addContainer(const Value& value);
    Index addScalar(const Value& value);
    Index addText(std::string_view text);
    template <class Map, class Key>
    Index addOnce(Map& map, const Key& key, Scalar scalar);
    Index append(Entry entry);

    Data encode();
    void encode(const Scalar& scalar);
    void encode(const Container& container);
    void encodeText(std::string_view text);
    void encodeHeader(std::uint8_t marker, std::size_t count);
    void encodeInteger(const Value& integer);
    void encodeBits(std::uint8_t marker, double number);
    void bigEndian(std::uint64_t number, std::size_t width);

    std::vector<Entry> entries_;
    std::vector<Index> references_;
    std::unordered_map<std::string_view, Index> strings_;
    std::unordered_map<std::string_view, Index> data_;
    std::unordered_map<std::int64_t, Index> integers_;
    std::unordered_map<std::uint64_t, Index> largeIntegers_;
    std::unordered_map<std::uint64_t, Index> reals_;
    std::unordered_map<std::uint64_t, Index> dates_;
    std::array<std::optional<Index>, 2> booleans_;

    Data bytes_;
    std::size_t referenceWidth_ = 1;
};

}  // namespace platform
