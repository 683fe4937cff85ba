// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace platform {

/// The bytes of a binary property list: a header, the objects, a table with the offset of each, and a trailer
/// with the widths of offsets and of references, how many objects there are, which one is the root, and where
/// the table begins. Numbers are big-endian. An object begins with its marker, whose upper half says what it
/// is and whose lower half its width or its size.
struct BinaryListFormat {
    static constexpr std::string_view header = "bplist00";
    static constexpr std::size_t trailerSize = 32;
    /// Where the trailer's fields lie in it.
    static constexpr std::size_t offsetWidthAt = 6;
    static constexpr std::size_t referenceWidthAt = 7;
    static constexpr std::size_t countAt = 8;
    static constexpr std::size_t rootAt = 16;
    static constexpr std::size_t tableAt = 24;

    enum class Kind : std::uint8_t {
        Simple = 0x0,
        Integer = 0x1,
        Real = 0x2,
        Date = 0x3,
        Bytes = 0x4,
        Ascii = 0x5,
        Utf16 = 0x6,
        Uid = 0x8,
        Elements = 0xA,  // an array
        Set = 0xC,
        Entries = 0xD  // a dictionary
    };
    static constexpr std::uint8_t nullMarker = 0x00;
    static constexpr std::uint8_t falseMarker = 0x08;
    static constexpr std::uint8_t trueMarker = 0x09;
    /// The lower half of a marker whose size does not fit it: the size follows as an integer.
    static constexpr std::uint8_t sizeFollows = 0xF;

    static constexpr Kind kindOf(std::uint8_t marker) { return static_cast<Kind>(marker >> 4); }
    static constexpr std::uint8_t marker(Kind kind, std::uint8_t detail) {
        return static_cast<std::uint8_t>(static_cast<unsigned>(kind) << 4 | detail);
    }
    /// Of an integer of that many bytes: a power of two, 16 at most.
    static constexpr std::uint8_t integerMarker(std::size_t width) {
        return marker(Kind::Integer, static_cast<std::uint8_t>(std::countr_zero(width)));
    }
    /// How many bytes follow the marker of a number, a date or a truth.
    static constexpr std::size_t fixedSize(std::uint8_t marker) {
        return kindOf(marker) == Kind::Simple ? 0 : std::size_t{1} << (marker & 0x0F);
    }
};

}  // namespace platform
