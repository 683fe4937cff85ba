// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/BinaryListFault.h"
#include "platform/foundation/BinaryListFormat.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace platform {

/// A binary property list left as the bytes it is: its objects are looked up and decoded one at a time, each
/// named by its number in the list. Reading and changing one record of a hundred thousand so costs one
/// record, where a tree of values would cost two million. Immutable; usable from any thread.
///
/// A UID reads as the dictionary {"CF$UID": integer}. A key that comes twice in a dictionary takes its last
/// value.
class BinaryList {
  public:
    using Object = std::uint32_t;

    /// A list of more bytes is a large one: all that is made to read it takes twice its bytes at most.
    static constexpr std::size_t largeSize = std::size_t{64} << 20;
    /// No list has more objects.
    static constexpr Object maximumCount = INT32_MAX;

    struct Pair {
        Object key;
        Object value;
    };

    /// Whether the bytes are a binary property list of any version, by how they begin.
    static bool recognises(std::span<const std::uint8_t> bytes);
    /// Checks everything that can be reached from the root, so that no later look-up can fail: offsets, sizes
    /// and references, key types, text encodings, nesting (as deep as property lists may be), and that shared
    /// references do not stand for far more than the bytes could hold. The error names the byte offset.
    static Result<BinaryList> create(Data bytes);
    /// Bytes that this program wrote itself; nothing is checked.
    static BinaryList trusted(Data bytes);

    const Data& bytes() const { return bytes_; }
    Object root() const { return root_; }
    /// How many objects there are, those that nothing refers to included.
    Object count() const { return count_; }
    /// Bytes each of an offset and of a reference.
    int offsetWidth() const { return offsetWidth_; }
    int referenceWidth() const { return referenceWidth_; }
    /// Where the table of offsets begins, and where an object does.
    std::size_t tableStart() const { return tableStart_; }
    std::size_t offset(Object object) const;

    /// How many bytes the list would need without the objects that nothing refers to; 0 when nothing was
    /// checked.
    std::uint64_t reachableBytes() const { return reachableBytes_; }

    bool isDictionary(Object object) const { return kind(object) == Kind::Entries; }
    bool isArray(Object object) const { return kind(object) == Kind::Elements; }
    /// An integer or a real; no boolean.
    bool isNumber(Object object) const;
    /// A dictionary's entries in their order; none for any other object.
    std::vector<Pair> pairs(Object object) const;
    std::size_t pairCount(Object dictionary) const;
    /// An array's elements; none for any other object.
    std::vector<Object> elements(Object object) const;
    /// The same one by one, for an array that is long.
    std::size_t elementCount(Object array) const;
    Object element(Object array, std::size_t position) const;
    /// The value's object under the key of a dictionary; the last one, should the key come twice.
    std::optional<Object> find(Object dictionary, std::string_view key) const;
    /// Empty for what is no string.
    std::optional<std::string> string(Object object) const;
    bool isString(Object object) const;
    /// Whether it is a string, and this one. Makes none to tell.
    bool textIs(Object object, std::string_view text) const;
    /// An object with all that it holds.
    Value value(Object object) const;
    /// The root with all that it holds. What several references share is made once and shared by the values;
    /// to know it takes memory for every object of the list.
    Value rootValue() const;
    /// The object's own bytes: what a container refers to is not among them.
    std::span<const std::uint8_t> encoded(Object object) const;

  private:
    friend class BinaryListCheck;
    using Kind = BinaryListFormat::Kind;

    /// An object's first bytes taken apart. `size` counts what its kind counts: bytes, characters, elements,
    /// pairs.
    struct Head {
        Kind kind;
        std::uint8_t marker;
        std::uint64_t size;
        std::size_t payload;
        std::size_t end;

        std::size_t payloadBytes() const { return end - payload; }
    };
    template <class T>
    using Checked = std::expected<T, BinaryListFault>;

    std::uint64_t number(std::size_t at, std::size_t width) const;
    Object reference(std::size_t at) const { return static_cast<Object>(number(at, referenceWidth_)); }
    Kind kind(Object object) const { return BinaryListFormat::kindOf(bytes_[offset(object)]); }
    /// The head at an offset before the table of offsets. A fault for a marker that property lists do not
    /// have, and for an object that leads past the objects' end.
    Checked<Head> checkedHead(std::size_t at) const;
    Checked<Head> fixedHead(std::size_t at, std::size_t size, BinaryListFault::Problem cutOff) const;
    Checked<Head> sizedHead(std::size_t at, std::uint64_t unit) const;
    /// Of an object that was checked.
    Head head(Object object) const { return *checkedHead(offset(object)); }
    std::span<const std::uint8_t> payload(const Head& head) const;
    std::string text(const Head& head) const;
    Value integerValue(const Head& head) const;
    Value uidValue(const Head& head) const;
    /// What was made is remembered under its number, where there is a memory to do so.
    Value value(Object object, std::vector<Value>* made) const;
    Value containerValue(const Head& head, std::vector<Value>* made) const;
    void readTrailer();

    Data bytes_;
    std::size_t tableStart_ = 0;
    std::uint64_t reachableBytes_ = 0;
    Object root_ = 0;
    Object count_ = 0;
    std::uint8_t offsetWidth_ = 1;
    std::uint8_t referenceWidth_ = 1;
};

}  // namespace platform
