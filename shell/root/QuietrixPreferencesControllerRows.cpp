// SPDX-License-Identifier: MIT
// The root list's rows, from the top of the screen to its end, and how their cells look. What the rows do is
// in QuietrixPreferencesController.cpp.
#include <algorithm>
#include <iterator>

#include "profile/cells/QXSwitchCell.h"
#include "profile/model/QXProfilesManager.h"
#include "shell/base/BundleImage.h"
#include "shell/base/Localization.h"
#include "shell/base/NavBarColor.h"
#include "shell/base/ProductInfo.h"
#include "shell/base/Rows.h"
#include "shell/chrome/CopyRight.h"
#include "shell/chrome/EditedProfile.h"
#include "shell/root/QuietrixPreferencesController.h"

namespace quietrix {

using platform::IndexPath;
using platform::method;
using platform::PSCellType;
using platform::PSSpecifier;
using platform::SpecifierArray;
using platform::SpecifierList;

PLATFORM_REGISTER_CLASS(QuietrixPreferencesController)

// Rows

SpecifierArray QuietrixPreferencesController::specifiers() {
    if (specifiers_ && !specifiers_->empty()) return specifiers_;
    currentYear() = yearOfPresentDate();
    SpecifierList rows{headerRow(), enabledRow()};
    if (settings()[enabledKey()].isTrue()) {
        rows.push_back(activeGroup());
        append(rows, *enabledProfilesSpecifiers());
        rows.push_back(inactiveGroup());
        append(rows, *disabledProfilesSpecifiers());
    }
    rows.push_back(aboutGroup());
    append(rows, *aboutSpecifiers());
    specifiers_ = std::make_shared<SpecifierList>(std::move(rows));
    forgetUnusedProfileRows();
    return specifiers_;
}

QuietrixPreferencesController::Row QuietrixPreferencesController::headerRow() {
    const auto header = PSSpecifier::emptyGroupSpecifier();
    header->setProperty_forKey("QXPackageHeaderCell", "headerCellClass");
    header->setProperty_forKey(productDisplayName, "title");
    header->setProperty_forKey("Silence your iDevice without noice!!", "subTitle");
    return header;
}

QuietrixPreferencesController::Row QuietrixPreferencesController::enabledRow() {
    return makeRow({.name = localized("Enabled"),
                    .cell = PSCellType::Switch,
                    .identifier = enabledKey(),
                    .target = shared(this),
                    .set = method("setPreferenceValue:specifier:",
                                  &QuietrixPreferencesController::setPreferenceValue_specifier),
                    .get = method("preferenceValue:", &QuietrixPreferencesController::preferenceValue),
                    .properties = {{"cellClass", QXSwitchCell::staticClass().name()}}});
}

QuietrixPreferencesController::Row QuietrixPreferencesController::activeGroup() {
    return PSSpecifier::groupSpecifierWithName(localized("Active Profiles"));
}

SpecifierArray QuietrixPreferencesController::enabledProfilesSpecifiers() {
    if (!enabledProfilesSpecifiers_) {
        enabledProfilesSpecifiers_ = std::make_shared<SpecifierList>(
            specifiersFromProfiles(QXProfilesManager::sharedManager()->enabledProfiles()));
    }
    return enabledProfilesSpecifiers_;
}

QuietrixPreferencesController::Row QuietrixPreferencesController::inactiveGroup() {
    return PSSpecifier::groupSpecifierWithName(localized("Inactive Profiles"));
}

SpecifierArray QuietrixPreferencesController::disabledProfilesSpecifiers() {
    if (!disabledProfilesSpecifiers_) {
        disabledProfilesSpecifiers_ = std::make_shared<SpecifierList>(
            specifiersFromProfiles(QXProfilesManager::sharedManager()->disabledProfiles()));
    }
    return disabledProfilesSpecifiers_;
}

SpecifierList QuietrixPreferencesController::specifiersFromProfiles(
    const std::vector<std::shared_ptr<QXProfile>>& profiles) {
    SpecifierList rows;
    rows.reserve(profiles.size());
    for (const auto& profile : profiles) rows.push_back(keptProfileRow(profile));
    if (rows.empty()) {
        rows.push_back(makeRow(
            {.name = localized("No Profiles"), .cell = PSCellType::StaticText, .target = shared(this)}));
    }
    return rows;
}

QuietrixPreferencesController::Row QuietrixPreferencesController::profileRow(
    const std::shared_ptr<QXProfile>& profile, std::string_view detail) {
    return makeRow({.name = profile->title(), .identifier = "title", .detail = detail, .userInfo = profile});
}

QuietrixPreferencesController::Row QuietrixPreferencesController::keptProfileRow(
    const std::shared_ptr<QXProfile>& profile) {
    Row& row = profileRows_[profile.get()];
    // The editor gives the row that opened it a newer record, after which the old one's place in memory may
    // be another's.
    if (!row || row->userInfo().object() != profile || row->name() != profile->title())
        row = profileRow(profile, profileEditorClass);
    return row;
}

void QuietrixPreferencesController::forgetUnusedProfileRows() {
    const auto isOfAProfile = [](const Row& row) { return !row->userInfo().isNil(); };
    const std::int64_t used = std::ranges::count_if(*specifiers_, isOfAProfile);
    if (std::ssize(profileRows_) == used) return;
    std::erase_if(profileRows_, [](const auto& entry) { return entry.second.use_count() == 1; });
}

QuietrixPreferencesController::Row QuietrixPreferencesController::aboutGroup() {
    const auto about = makeGroup(localized("About"), copyRightNoticeWithName(currentYear()));
    about->setIdentifier(std::string(copyRightIdentifier));
    return about;
}

SpecifierArray QuietrixPreferencesController::aboutSpecifiers() {
    if (!aboutSpecifiers_) {
        aboutSpecifiers_ = std::make_shared<SpecifierList>(
            SpecifierList{makeRow({.name = localized("Miscellaneous"),
                                   .identifier = "Miscellaneous",
                                   .detail = "QuietrixMiscController",
                                   .properties = {{"iconImage", bundleImage(getClass(), "Misc")}}})});
    }
    return aboutSpecifiers_;
}

// Cells

std::shared_ptr<platform::PSTableCell> QuietrixPreferencesController::tableView_cellForRowAtIndexPath(
    const Table& table, IndexPath path) {
    auto cell = QuietrixBaseEditableSettingsController::tableView_cellForRowAtIndexPath(table, path);
    const auto profile = profileOfRow(specifierAtIndexPath(path));
    if (!profile) return cell;
    cell->detailTextLabel()->setTextColor(navBarPatternColor(getClass()));
    cell->detailTextLabel()->setText(
        profile->isAllDay() ? localized("All Day")
                            : stringWithFormat("%@ - %@", {profile->valueForKey("startTime").description(),
                                                           profile->valueForKey("endTime").description()}));
    return cell;
}

}  // namespace quietrix
