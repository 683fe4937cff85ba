// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace platform {

/// Reads a binary property list: a table of objects that refer to each other by number.
///
/// Each object is made once, however often it is referred to; objects that share their bytes and keys that
/// many dictionaries share are bounded, so that memory stays in proportion to the file. The tree that the
/// references unfold to is bounded as well, since whoever walks it later meets it unfolded: a value costs
/// one, a dictionary's key its bytes more, and the whole may cost `expansionFactor` times the file's bytes
/// (and `expansionAllowance` more).
///
/// Markers that are no property-list values (null, sets, others) are errors. A UID becomes the dictionary
/// {"CF$UID": integer}. Strings with surrogates that lack their other half are errors: they have no UTF-8
/// form. A key that comes twice in a dictionary takes its last value.
class BinaryPropertyListReader {
  public:
    static constexpr std::uint64_t expansionFactor = 64;
    static constexpr std::uint64_t expansionAllowance = 65536;

    static bool recognises(const Data& data);
    static Result<Value> read(const Data& data);

  private:
    enum class State : std::uint8_t { Unread, BeingRead, Read };
    struct Object {
        Value value;
        std::uint64_t cost = 1;
        std::uint16_t height = 0;
        State state = State::Unread;
    };
    /// The part of an object that follows its marker and its count.
    struct Body {
        std::size_t offset;
        std::uint64_t count;
    };

    explicit BinaryPropertyListReader(const Data& data) : bytes_(data) {}

    Result<void> readTrailer();
    Result<const Object*> readObject(std::uint64_t index, int level);
    Result<Value> readScalar(std::size_t offset);
    Result<Value> readInteger(std::size_t offset, std::size_t width, std::string_view what);
    Result<Value> readReal(std::size_t offset, std::size_t width);
    Result<Value> readUID(std::size_t offset);
    Result<Value> readText(std::size_t offset);
    Result<void> readArray(std::size_t offset, Object& object, int level);
    Result<void> readDictionary(std::size_t offset, Object& object, int level);
    /// The count of a container, string or data at that offset, whose items have that many bytes each; fails
    /// unless all of them lie before the offset table.
    Result<Body> readBody(std::size_t offset, std::uint64_t itemWidth);
    /// The object of a container's item, added to the container's cost and height.
    Result<const Object*> readItem(std::size_t referenceOffset, Object& container, int level);
    /// Counts what was read or copied towards the bound, and what a container unfolds to.
    Result<void> spend(std::uint64_t bytes, std::size_t offset);
    Result<void> addCost(Object& container, std::uint64_t cost, std::size_t offset);
    std::uint64_t bound() const;

    bool has(std::size_t offset, std::uint64_t count) const {
        return offset <= end_ && count <= end_ - offset;
    }
    std::uint64_t bigEndian(std::size_t offset, std::size_t width) const;
    std::unexpected<Error> errorAt(std::size_t offset, std::string_view problem) const;

    std::span<const std::uint8_t> bytes_;
    std::vector<Object> objects_;
    std::size_t end_ = 0;  // of the objects, where the offset table begins
    std::size_t offsetWidth_ = 0;
    std::size_t referenceWidth_ = 0;
    std::uint64_t topObject_ = 0;
    std::uint64_t spent_ = 0;
};

}  // namespace platform
