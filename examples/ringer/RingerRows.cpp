// SPDX-License-Identifier: MIT
#include "RingerRows.h"

#include <utility>

#include "RingerController.h"
#include "platform/foundation/Bundle.h"
#include "platform/uikit/UIAlertController.h"

namespace ringer {

using platform::PSSpecifier;

std::string text(std::string_view key) {
    return platform::Bundle::bundleForClass(RingerController::staticClass())
        ->localizedStringForKey_value_table(key, {}, {});
}

std::string textWith(std::string_view key, const platform::Value& value) {
    std::string format = text(key);
    if (const auto place = format.find("%@"); place != std::string::npos)
        format.replace(place, 2, value.description());
    return format;
}

std::shared_ptr<PSSpecifier> makeRow(RowParts parts) {
    auto row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        parts.name, parts.target, std::move(parts.set), std::move(parts.get), parts.detail, parts.cell,
        parts.pane);
    row->setIdentifier(std::move(parts.identifier));
    row->setButtonAction(std::move(parts.action));
    row->setUserInfo(std::move(parts.userInfo));
    for (const auto& [key, value] : parts.properties) row->setProperty_forKey(value, key);
    return row;
}

std::shared_ptr<PSSpecifier> makeGroup(std::string_view name, std::string_view footer) {
    auto group =
        name.empty() ? PSSpecifier::emptyGroupSpecifier() : PSSpecifier::groupSpecifierWithName(name);
    if (!footer.empty()) group->setProperty_forKey(footer, "footerText");
    return group;
}

void showError(platform::UIViewController& screen, const platform::Result<void>& result) {
    if (result) return;
    const auto alert = std::make_shared<platform::UIAlertController>(
        text("Not saved"), result.error().localizedDescription, platform::UIAlertControllerStyleAlert);
    alert->addAction({text("Close"), platform::UIAlertActionStyleCancel, {}});
    screen.presentViewController_animated_completion(alert, true, {});
}

}  // namespace ringer
