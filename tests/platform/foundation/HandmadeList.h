// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "platform/foundation/Value.h"

namespace platform::testing {

/// Puts binary property lists together byte by byte, also such as no writer makes. The first object is the
/// root unless another one is named.
class HandmadeList {
  public:
    std::size_t offsetWidth = 1;
    std::size_t referenceWidth = 1;
    std::uint64_t root = 0;

    /// Adds an object with these bytes, its marker first.
    HandmadeList& object(std::initializer_list<int> bytes) {
        Data content;
        for (const int byte : bytes) content.push_back(static_cast<std::uint8_t>(byte));
        return object(content);
    }
    HandmadeList& object(const Data& bytes) {
        objects_.push_back(bytes);
        return *this;
    }
    /// Adds a container with a one-byte or two-byte count and these references.
    HandmadeList& container(int marker, const std::vector<std::uint64_t>& references, std::size_t count) {
        Data content;
        if (count < 15) {
            content.push_back(static_cast<std::uint8_t>(marker | static_cast<int>(count)));
        } else {
            content = {static_cast<std::uint8_t>(marker | 0xF), 0x12};
            append(content, count, 4);
        }
        for (const std::uint64_t reference : references) append(content, reference, referenceWidth);
        return object(content);
    }
    HandmadeList& array(const std::vector<std::uint64_t>& references) {
        return container(0xA0, references, references.size());
    }
    /// First the keys, then the values.
    HandmadeList& dictionary(const std::vector<std::uint64_t>& references) {
        return container(0xD0, references, references.size() / 2);
    }

    Data build() const {
        constexpr std::string_view magic = "bplist00";
        Data data(magic.begin(), magic.end());
        std::vector<std::size_t> offsets;
        for (const Data& content : objects_) {
            offsets.push_back(data.size());
            data.insert(data.end(), content.begin(), content.end());
        }
        const std::size_t table = data.size();
        for (const std::size_t offset : offsets) append(data, offset, offsetWidth);
        data.insert(data.end(), 6, 0);
        append(data, offsetWidth, 1);
        append(data, referenceWidth, 1);
        append(data, objects_.size(), 8);
        append(data, root, 8);
        append(data, table, 8);
        return data;
    }

    static void append(Data& data, std::uint64_t number, std::size_t width) {
        for (std::size_t shift = width * 8; shift > 0; shift -= 8) {
            data.push_back(shift > 64 ? std::uint8_t{0} : static_cast<std::uint8_t>(number >> (shift - 8)));
        }
    }

  private:
    std::vector<Data> objects_;
};

}  // namespace platform::testing
