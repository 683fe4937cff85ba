// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryListEncoding.h"

#include <algorithm>
#include <bit>

namespace platform {

using Format = BinaryListFormat;

void BinaryListEncoding::appendNumber(Data& bytes, std::uint64_t number, std::size_t width) {
    const std::size_t at = bytes.size();
    bytes.resize(at + width);
    putNumber(bytes.data() + at, number, width);
}

void BinaryListEncoding::putNumber(std::uint8_t* bytes, std::uint64_t number, std::size_t width) {
    while (width-- > 0) {
        bytes[width] = static_cast<std::uint8_t>(number);
        number >>= 8;
    }
}

void BinaryListEncoding::appendHead(Data& bytes, Format::Kind kind, std::uint64_t size) {
    if (size < Format::sizeFollows) {
        bytes.push_back(Format::marker(kind, static_cast<std::uint8_t>(size)));
        return;
    }
    const std::size_t width = integerWidth(size);
    bytes.push_back(Format::marker(kind, Format::sizeFollows));
    bytes.push_back(Format::integerMarker(width));
    appendNumber(bytes, size, width);
}

std::size_t BinaryListEncoding::headSize(std::uint64_t size) {
    return size < Format::sizeFollows ? 1 : 2 + integerWidth(size);
}

std::size_t BinaryListEncoding::widthOf(std::uint64_t largest) {
    return std::max<std::size_t>(1, (static_cast<std::size_t>(std::bit_width(largest)) + 7) / 8);
}

std::size_t BinaryListEncoding::integerWidth(std::uint64_t number) {
    return std::bit_ceil(widthOf(number));
}

}  // namespace platform
