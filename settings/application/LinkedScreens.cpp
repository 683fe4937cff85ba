// SPDX-License-Identifier: MIT
#include "settings/application/LinkedScreens.h"

#include <algorithm>
#include <utility>

#include "platform/preferences/PSPlaceholderController.h"

namespace settings {

using platform::Array;
using platform::PSCellType;
using platform::PSSpecifier;

std::vector<LinkedScreen> linkedScreens(const std::shared_ptr<platform::Bundle>& bundle,
                                        const TopScreen& top) {
    std::vector<LinkedScreen> links;
    const auto list = top.list();
    if (!bundle || !list) return links;
    const auto entries = bundle->infoDictionary().find("LinkedScreens");
    if (entries == bundle->infoDictionary().end() || entries->second.array() == nullptr) return links;
    const auto rows = list->specifiers();
    for (const auto& entry : *entries->second.array()) {
        const std::string title = entry["Title"].stringOr();
        const std::string className = entry["Class"].stringOr();
        const std::string rowIdentifier = entry["Row"].stringOr();
        if (title.empty() || className.empty() || rowIdentifier.empty()) continue;
        if (entry["Screen"].stringOr() != list->getClass().name()) continue;
        const auto row = std::ranges::find_if(
            *rows, [&](const auto& candidate) { return candidate->identifier() == rowIdentifier; });
        if (row == rows->end()) continue;

        LinkedScreen link{bundle->localizedStringForKey_value_table(title, {}, {}), className, nullptr};
        link.specifier = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            link.title, nullptr, {}, {}, className, PSCellType::Link, {});
        link.specifier->setUserInfo((*row)->userInfo());
        links.push_back(std::move(link));
    }
    return links;
}

void openLinkedScreen(platform::UINavigationController& navigation, const LinkedScreen& link) {
    const auto screen = platform::makeViewController(link.className);
    screen->setSpecifier(link.specifier);
    navigation.pushViewController_animated(screen, true);
}

}  // namespace settings
