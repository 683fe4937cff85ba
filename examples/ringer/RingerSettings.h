// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string_view>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

/// The bundle's own settings file, a binary property list. Several processes may have it open: each change is
/// made to what the file holds by then, and every process of the phone is told of it. Main thread.
namespace ringer::settings {

/// Where the phone keeps it.
inline constexpr std::string_view path = "/var/mobile/Library/Preferences/com.example.ringer.plist";
/// Posted in each process after any process has changed the file.
inline constexpr std::string_view changedNotification = "com.example.RingerChangedNotification";

/// What is stored under the key; its default where the file, or the key in it, is missing or cannot be read.
/// Nil for a key that the settings do not have.
platform::Value valueForKey(std::string_view key);

/// Stores the value; a key that the settings do not have is an error.
platform::Result<void> setValue_forKey(const platform::Value& value, std::string_view key);
/// Hands what is stored to the function and writes back what it made of it. Keys of other versions stay. A
/// file that is there and cannot be read is an error, and stays as it is.
platform::Result<void> change(const std::function<void(platform::Dictionary&)>& edit);
/// Back to the defaults.
platform::Result<void> reset();

}  // namespace ringer::settings
