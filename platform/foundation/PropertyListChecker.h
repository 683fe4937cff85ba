// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/foundation/PropertyList.h"

namespace platform {

/// Finds what a format cannot hold before a byte is written, so that the writers have no failures of their
/// own. Neither holds nil, objects, strings that are no UTF-8, or containers nested too deep; XML also has no
/// control characters (but tab and the line breaks) and no dates outside the years 1 to 9999.
class PropertyListChecker {
  public:
    /// The error names the key path of the first offender: `profiles[3].title`.
    static Result<void> check(const Value& value, PropertyListFormat format);

  private:
    using Step = std::variant<std::string_view, std::size_t>;

    explicit PropertyListChecker(PropertyListFormat format) : format_(format) {}

    /// What is wrong with the value or with one inside it, whose place is then the path; empty when all is
    /// well.
    std::optional<std::string> problem(const Value& value);
    std::optional<std::string> problemInside(const Value& container);
    std::optional<std::string> problemOfText(std::string_view text) const;
    std::string path() const;

    PropertyListFormat format_;
    std::vector<Step> steps_;
};

}  // namespace platform
