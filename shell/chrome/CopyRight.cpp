// SPDX-License-Identifier: MIT
#include "shell/chrome/CopyRight.h"

#include "shell/base/Localization.h"
#include "shell/base/Lookups.h"
#include "shell/base/ProductInfo.h"

namespace quietrix {

std::string copyRightNotice(std::int64_t year) {
    return "\u00A9 " + std::to_string(year) + " Velmora. All rights reserved.";
}

std::string copyRightNoticeWithName(std::int64_t year) {
    return std::string(productDisplayName) + " " + copyRightNotice(year);
}

std::string versionNotice(std::int64_t year) {
    return stringWithFormat("Version %@. %@ %@",
                            {getProductInfoDict()["Version"].description(),
                             localizedInMainBundle(productDisplayName), copyRightNotice(year)});
}

void updateCopyRightFooter(platform::PSListController& screen) {
    const auto row = vm__specifierByIdentifier_identifier(screen, *screen.specifiers(), copyRightIdentifier);
    if (row) row->setProperty_forKey(versionNotice(currentYear()), "footerText");
}

}  // namespace quietrix
