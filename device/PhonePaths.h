// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// Where the phone keeps what the device and its programs look for, as paths of the phone.
namespace device::phonePaths {

/// The preference bundles, a directory or a link each.
inline constexpr std::string_view preferenceBundles = "/Library/PreferenceBundles";
/// The images that the phone's own screens share with the bundles'.
inline constexpr std::string_view systemImages = "/System/Library/PrivateFrameworks/PreferencesUI.framework";
inline constexpr std::string_view temporaryFiles = "/tmp";
/// Where the system shell tells what it has observed.
inline constexpr std::string_view shellLog = "/tmp/velmora.log";
/// The calendars, a folder an account.
inline constexpr std::string_view calendars = "/var/mobile/Library/Calendars";
inline constexpr std::string_view preferences = "/var/mobile/Library/Preferences";
/// The product's switch, among others.
inline constexpr std::string_view mainSettings = "/var/mobile/Library/Preferences/com.velmora.quietrix.plist";
/// The remembered networks of a phone that has a list of its own.
inline constexpr std::string_view knownNetworks = "/var/mobile/Library/Preferences/known-networks.plist";
inline constexpr std::string_view mailOutbox = "/var/mobile/Library/Mail/Outbox";
inline constexpr std::string_view mailDrafts = "/var/mobile/Library/Mail/Drafts";
/// What was made up for the device and is the same at each start.
inline constexpr std::string_view deviceFacts = "/private/var/root/device-facts.plist";
/// Where each process has its socket for system-wide notifications.
inline constexpr std::string_view notifications = "/private/var/run/notifications";

}  // namespace device::phonePaths
