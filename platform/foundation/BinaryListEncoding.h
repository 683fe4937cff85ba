// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/foundation/BinaryListFormat.h"
#include "platform/foundation/Value.h"

namespace platform {

/// The bytes that objects of a binary property list begin with, for whoever writes them.
struct BinaryListEncoding {
    /// The number in that many bytes, big-endian.
    static void appendNumber(Data& bytes, std::uint64_t number, std::size_t width);
    /// Writes it over the bytes that are there.
    static void putNumber(std::uint8_t* bytes, std::uint64_t number, std::size_t width);

    /// The marker of an object that says its size, which follows in an integer of 1, 2, 4 or 8 bytes where
    /// the marker has no room for it.
    static void appendHead(Data& bytes, BinaryListFormat::Kind kind, std::uint64_t size);
    /// How many bytes that takes.
    static std::size_t headSize(std::uint64_t size);

    /// The fewest bytes for all numbers up to the largest, three included; for an integer object, of which
    /// there are those of 1, 2, 4 and 8 bytes.
    static std::size_t widthOf(std::uint64_t largest);
    static std::size_t integerWidth(std::uint64_t number);
};

}  // namespace platform
