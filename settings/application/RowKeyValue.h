// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/foundation/Value.h"
#include "platform/preferences/RowKeys.h"

namespace settings {

/// The keys of a list's rows, and what each row is known by, for another process. Main thread.
platform::Value valueOfRowKeys(const platform::RowKeys& keys);
/// What valueOfRowKeys() gave; entries of another form are left out. Main thread.
platform::RowKeys rowKeysOfValue(const platform::Value& value);

/// The number under the key; 0 when there is none. Any thread.
std::uint64_t numberIn(const platform::Value& value, std::string_view key);

}  // namespace settings
