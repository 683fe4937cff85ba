// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace settings {

/// The fields of one command, read by their types. Each error names the field and what it must be; a field
/// that is missing is of no type. Fields that nobody reads are ignored.
class CommandFields {
  public:
    explicit CommandFields(platform::Dictionary fields) : fields_(std::move(fields)) {}

    bool has(std::string_view key) const { return fields_.contains(key); }
    /// Nil for a field that is missing.
    platform::Value value(std::string_view key) const;
    platform::Result<bool> boolean(std::string_view key) const;
    platform::Result<std::int64_t> integer(std::string_view key) const;
    /// 0 or more.
    platform::Result<std::int64_t> index(std::string_view key) const;
    /// Empty for a field that is missing.
    platform::Result<std::optional<std::int64_t>> optionalIndex(std::string_view key) const;
    /// Finite and not negative.
    platform::Result<double> seconds(std::string_view key) const;
    platform::Result<std::string> text(std::string_view key) const;
    /// Empty for a field that is missing.
    platform::Result<std::optional<std::string>> optionalText(std::string_view key) const;

  private:
    platform::Dictionary fields_;
};

}  // namespace settings
