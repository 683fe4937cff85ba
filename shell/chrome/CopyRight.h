// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/preferences/PSListController.h"
#include "velmora/VMMiscSettingsViewController.h"

namespace quietrix {

/// The identifier of the row whose footer carries the copyright notice.
inline constexpr std::string_view copyRightIdentifier = velmora::copyRightHeaderIdentifier;
/// The product's name as it stands, in no language's translation.
inline constexpr std::string_view productDisplayName = "Quietrix Go";

/// The maker's copyright with the year.
std::string copyRightNotice(std::int64_t year);
/// The display name and the maker's copyright with the year.
std::string copyRightNoticeWithName(std::int64_t year);
/// "Version", the product's version, a full stop, the display name in the host application's language, and
/// the maker's copyright with the year. A version that cannot be read shows as "(null)".
std::string versionNotice(std::int64_t year);

/// Puts the version notice of the shared year under the screen's copyright row; nothing without such a row.
void updateCopyRightFooter(platform::PSListController& screen);

}  // namespace quietrix
