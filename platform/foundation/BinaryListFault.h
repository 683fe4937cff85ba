// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/foundation/Error.h"

namespace platform {

/// What is wrong with the bytes of a binary property list, and where. The sentences for it are in one table.
struct BinaryListFault {
    enum class Problem : std::uint8_t {
        TooShort,  // the number is how many bytes there are
        UnknownVersion,
        OffsetWidth,
        ReferenceWidth,
        TableOutside,
        ObjectCount,
        TooManyObjects,
        RootMissing,
        ObjectOutside,
        ObjectMissing,
        HoldsItself,
        NestsTooDeep,
        Null,
        Set,  // the number is the marker, as it is for the next
        UnknownMarker,
        IntegerCutOff,
        RealCutOff,
        DateCutOff,
        UidCutOff,
        SizeMissing,
        SizeNoInteger,
        SizeNegative,
        SizeCutOff,
        SizeTooLarge,
        ReachesBeyond,  // the number is how many items the object says it has
        IntegerTooLarge,
        UidTooLarge,
        ForeignByte,  // the number is the byte
        HalfSurrogate,
        KeyNoString,
        SharedBytes,
        Unfolds
    };

    Problem problem;
    /// The offset of the byte.
    std::size_t at;
    /// What some sentences tell beside the place.
    std::uint64_t number = 0;

    /// As a whole sentence.
    Error error() const;
};

}  // namespace platform
