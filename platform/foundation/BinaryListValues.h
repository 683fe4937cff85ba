// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/foundation/BinaryList.h"
#include "platform/foundation/Value.h"

namespace platform {

/// Makes values of a list's objects. Dictionaries of the same keys in the same order share them, as records
/// mostly do, so that each key is decoded, compared and put into its place once for all of them.
class BinaryListValues {
  public:
    using Object = BinaryList::Object;
    /// Whether an object that is met again gives the value that was made of it before. To know it takes
    /// memory for every object of the list.
    enum class Memory : std::uint8_t { None, OfAll };

    BinaryListValues(const BinaryList& list, Memory memory);

    Value value(Object object);

  private:
    using Head = BinaryList::Head;
    using Kind = BinaryList::Kind;
    /// The keys of a dictionary in their order, and of each key in the list's order where its value belongs.
    struct Shape {
        Shared<Dictionary::Keys> keys;
        std::vector<std::uint32_t> places;
    };

    Value make(Object object);
    Value array(const Head& head);
    Value dictionary(const Head& head);
    /// Of the keys whose references begin there.
    const Shape& shape(std::size_t at, std::size_t count);
    Shape makeShape(std::size_t at, std::size_t count) const;

    const BinaryList& list_;
    std::vector<Value> made_;
    /// By the bytes of the references to the keys.
    std::unordered_map<std::string_view, Shape> shapes_;
    const std::pair<const std::string_view, Shape>* last_ = nullptr;
};

}  // namespace platform
