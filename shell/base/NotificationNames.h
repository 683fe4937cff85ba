// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace quietrix {

/// Every notification that the plug-in posts or observes. Darwin notifications reach every process of the
/// phone, local ones this process only; some names travel in both.

/// Darwin, for the engine: the product was switched on or off.
inline constexpr std::string_view QuietrixEnabledOrDisableNotification =
    "com.velmora.QuietrixEnabledOrDisableNotification";
/// Darwin and local: the store gained, changed or lost a profile.
inline constexpr std::string_view ProfileAddedNotification = "com.velmora.ProfileAddedNotification";
inline constexpr std::string_view ProfileChangedNotification = "com.velmora.ProfileChangedNotification";
inline constexpr std::string_view ProfileDeletedNotification = "com.velmora.ProfileDeletedNotification";
/// Darwin: a profile began or ceased to be applied. Local: any change of profiles; the open screens rebuild.
inline constexpr std::string_view ProfileAppliedStateChangedNotification =
    "com.velmora.ProfileAppliedStateChangedNotification";
/// Local: a screen changed the record that the editor is editing.
inline constexpr std::string_view ProfileDataUpdateNotification = "com.velmora.ProfileDataUpdateNotification";

}  // namespace quietrix
