// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/preferences/RowKeys.h"

namespace settings {

/// A row's key as a state spells it. Any thread.
std::string rowKeyText(platform::RowKey key);
/// The key that is spelled so; 0, which is no row's key, for a text that rowKeyText() never gives. Any
/// thread.
platform::RowKey rowKeyOf(const std::string& text);

}  // namespace settings
