// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace quietrix {

/// Where the phone finds this plug-in.
inline constexpr std::string_view bundlePath = "/Library/PreferenceBundles/QuietrixPreferences.bundle";

/// The text for the key (its English text) from the plug-in's bundle, which is looked up afresh at each use;
/// a key that it lacks gives the key itself. Without the bundle: as localizedInMainBundle. Main thread.
std::string localized(std::string_view key);

/// The text for the key from the host application's main bundle alone; a key that it lacks gives the key
/// itself. Main thread.
std::string localizedInMainBundle(std::string_view key);

/// Puts the arguments in place of the "%@" of a format, in their order; those too many are dropped.
std::string stringWithFormat(std::string_view format, std::initializer_list<std::string_view> arguments);

}  // namespace quietrix
