// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/foundation/Value.h"

namespace platform {

/// Writes a value that PropertyListChecker found writable as an XML property list. Reals take the shortest
/// text that reads back the same (the payload of a NaN is lost); dates are written in whole seconds, their
/// fractions dropped, because the format has none.
class XMLPropertyListWriter {
  public:
    static Data write(const Value& value);

  private:
    void add(const Value& value, std::size_t level);
    void addContainer(std::string_view name, const Value& value, std::size_t level);
    void addElement(std::string_view name, std::string_view text, std::size_t level);
    void indent(std::size_t level) { text_.append(level, '\t'); }

    std::string text_;
};

}  // namespace platform
