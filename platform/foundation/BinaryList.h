// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
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

    /// An entry of a dictionary, by the numbers of its objects.
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
    std::size_t offset(Object object) const {
        return number(tableStart_ + std::size_t{object} * offsetWidth_, offsetWidth_);
    }

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
    friend class BinaryListValues;
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

    /// Of 1 to 8 bytes before the trailer, or of those of the trailer. The trailer is as long that eight can
    /// always be looked at.
    std::uint64_t number(std::size_t at, std::size_t width) const {
        std::uint64_t eight;
        std::memcpy(&eight, bytes_.data() + at, sizeof eight);
        if constexpr (std::endian::native == std::endian::little) eight = std::byteswap(eight);
        return eight >> (64 - 8 * width);
    }
    Object reference(std::size_t at) const { return static_cast<Object>(number(at, referenceWidth_)); }
    Kind kind(Object object) const { return BinaryListFormat::kindOf(bytes_[offset(object)]); }
    /// The head at an offset before the table of offsets. A fault for a marker that property lists do not
    /// have, and for an object that leads past the objects' end.
    Checked<Head> checkedHead(std::size_t at) const;
    Checked<Head> fixedHead(std::size_t at, std::size_t size, BinaryListFault::Problem cutOff) const;
    Checked<Head> sizedHead(std::size_t at, std::uint64_t unit) const;
    /// Of an object that was checked.
    Head head(Object object) const;
    std::span<const std::uint8_t> payload(const Head& head) const;
    std::string text(const Head& head) const;
    Value integerValue(const Head& head) const;
    Value uidValue(const Head& head) const;
    void readTrailer();

    Data bytes_;
    std::size_t tableStart_ = 0;
    std::uint64_t reachableBytes_ = 0;
    Object root_ = 0;
    Object count_ = 0;
    std::uint8_t offsetWidth_ = 1;
    std::uint8_t referenceWidth_ = 1;
};

inline BinaryList::Head BinaryList::head(Object object) const {
    const std::size_t at = offset(object);
    const std::uint8_t marker = bytes_[at];
    const std::uint8_t detail = marker & 0x0F;
    Head head{BinaryListFormat::kindOf(marker), marker, detail, at + 1, 0};
    std::size_t unit = 1;
    switch (head.kind) {
        case Kind::Simple:
            head.size = 0;
            break;
        case Kind::Integer:
        case Kind::Real:
        case Kind::Date:
            head.size = std::uint64_t{1} << detail;
            break;
        case Kind::Uid:
            ++head.size;
            break;
        default:
            if (head.kind == Kind::Utf16) unit = 2;
            if (head.kind == Kind::Elements) unit = referenceWidth_;
            if (head.kind == Kind::Entries) unit = std::size_t{2} * referenceWidth_;
            if (detail != BinaryListFormat::sizeFollows) break;
            const std::size_t width = std::size_t{1} << (bytes_[at + 1] & 0x0F);
            head.payload = at + 2 + width;
            head.size =
                number(head.payload - std::min<std::size_t>(width, 8), std::min<std::size_t>(width, 8));
    }
    head.end = head.payload + static_cast<std::size_t>(head.size * unit);
    return head;
}

}  // namespace platform
