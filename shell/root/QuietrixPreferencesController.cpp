// SPDX-License-Identifier: MIT
#include "shell/root/QuietrixPreferencesController.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/RunLoop.h"
#include "platform/preferences/PSPlaceholderController.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UINavigationController.h"
#include "profile/cells/QXSwitchCell.h"
#include "profile/model/QXProfilesManager.h"
#include "shell/base/ErrorAlert.h"
#include "shell/base/Localization.h"
#include "shell/base/NavBarColor.h"
#include "shell/base/NotificationNames.h"
#include "shell/base/ProductInfo.h"
#include "shell/chrome/CopyRight.h"

namespace quietrix {

using platform::Dictionary;
using platform::FileManager;
using platform::IndexPath;
using platform::method;
using platform::NotificationCenter;
using platform::PSCellType;
using platform::PSSpecifier;
using platform::SpecifierArray;
using platform::SpecifierList;
using platform::UIAlertController;
using platform::UIBarButtonItem;
using platform::Value;

namespace {

constexpr const char* productIdentifier = "com.velmora.quietrix";
constexpr const char* profileEditorClass = "QuietrixProflePreferencesController";
/// Header group and switch stand ahead of the profile sections, whose first group is followed by its rows.
constexpr std::int64_t activeGroupIndex = 2;
constexpr std::int64_t firstActiveRowIndex = 3;

std::string enabledKey() {
    return std::string(productIdentifier) + ".enabled";
}

/// Nil when the file is missing. One that is there but holds no dictionary is left alone, with one log line.
Value readSettings(const std::string& path) {
    const auto& files = FileManager::defaultManager();
    if (!files.fileExistsAtPath(path)) return nullptr;
    std::string reason;
    if (const auto data = files.contentsAtPath(path); !data) {
        reason = data.error().localizedDescription;
    } else if (const auto list = platform::PropertyListSerialization::propertyListWithData(*data); !list) {
        reason = list.error().localizedDescription;
    } else if (!list->dictionary()) {
        reason = "The root of the property list is no dictionary.";
    } else {
        return *list;
    }
    platform::log("com.velmora.Tessane: Error => Unable to read settings from " + path + ": " + reason);
    return nullptr;
}

std::shared_ptr<PSSpecifier> profileRow(const std::shared_ptr<QXProfile>& profile) {
    const auto row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        profile->title(), nullptr, {}, {}, profileEditorClass, PSCellType::Link, "");
    row->setIdentifier("title");
    row->setUserInfo(profile);
    return row;
}

}  // namespace

PLATFORM_REGISTER_CLASS(QuietrixPreferencesController)

// Rows

SpecifierArray QuietrixPreferencesController::specifiers() {
    if (specifiers_ && !specifiers_->empty()) return specifiers_;
    currentYear() = yearOfPresentDate();
    const auto self = shared(this);
    auto rows = std::make_shared<SpecifierList>();

    const auto header = PSSpecifier::emptyGroupSpecifier();
    header->setProperty_forKey("QXPackageHeaderCell", "headerCellClass");
    header->setProperty_forKey(productDisplayName, "title");
    header->setProperty_forKey("Silence your iDevice without noice!!", "subTitle");
    rows->push_back(header);

    const auto enabled = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        localized("Enabled"), self,
        method("setPreferenceValue:specifier:", &QuietrixPreferencesController::setPreferenceValue_specifier),
        method("preferenceValue:", &QuietrixPreferencesController::preferenceValue), "", PSCellType::Switch,
        "");
    enabled->setIdentifier(enabledKey());
    enabled->setProperty_forKey(QXSwitchCell::staticClass().name(), "cellClass");
    rows->push_back(enabled);

    if (settings()[enabledKey()].isTrue()) {
        rows->push_back(PSSpecifier::groupSpecifierWithName(localized("Active Profiles")));
        const auto active = enabledProfilesSpecifiers();
        rows->insert(rows->end(), active->begin(), active->end());
        rows->push_back(PSSpecifier::groupSpecifierWithName(localized("Inactive Profiles")));
        const auto inactive = disabledProfilesSpecifiers();
        rows->insert(rows->end(), inactive->begin(), inactive->end());
    }

    const auto about = PSSpecifier::groupSpecifierWithName(localized("About"));
    about->setIdentifier(std::string(copyRightIdentifier));
    about->setProperty_forKey(copyRightNoticeWithName(currentYear()), "footerText");
    rows->push_back(about);
    const auto aboutRows = aboutSpecifiers();
    rows->insert(rows->end(), aboutRows->begin(), aboutRows->end());

    specifiers_ = std::move(rows);
    return specifiers_;
}

SpecifierList QuietrixPreferencesController::specifiersFromProfiles(
    const std::vector<std::shared_ptr<QXProfile>>& profiles) {
    SpecifierList rows;
    rows.reserve(profiles.size());
    for (const auto& profile : profiles) rows.push_back(profileRow(profile));
    if (rows.empty()) {
        rows.push_back(PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            localized("No Profiles"), shared(this), {}, {}, "", PSCellType::StaticText, ""));
    }
    return rows;
}

SpecifierArray QuietrixPreferencesController::enabledProfilesSpecifiers() {
    if (!enabledProfilesSpecifiers_) {
        enabledProfilesSpecifiers_ = std::make_shared<SpecifierList>(
            specifiersFromProfiles(QXProfilesManager::sharedManager()->enabledProfiles()));
    }
    return enabledProfilesSpecifiers_;
}

SpecifierArray QuietrixPreferencesController::disabledProfilesSpecifiers() {
    if (!disabledProfilesSpecifiers_) {
        disabledProfilesSpecifiers_ = std::make_shared<SpecifierList>(
            specifiersFromProfiles(QXProfilesManager::sharedManager()->disabledProfiles()));
    }
    return disabledProfilesSpecifiers_;
}

SpecifierArray QuietrixPreferencesController::aboutSpecifiers() {
    if (!aboutSpecifiers_) {
        const auto misc = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            localized("Miscellaneous"), nullptr, {}, {}, "QuietrixMiscController", PSCellType::Link, "");
        misc->setIdentifier("Miscellaneous");
        misc->setProperty_forKey(
            platform::UIImage::imageNamed_inBundle("Misc", platform::Bundle::bundleForClass(getClass())),
            "iconImage");
        aboutSpecifiers_ = std::make_shared<SpecifierList>(SpecifierList{misc});
    }
    return aboutSpecifiers_;
}

// The switch and its file

std::string QuietrixPreferencesController::settingsFilePath() const {
    return platform::stringByAppendingPathComponent(
        platform::stringByAppendingPathComponent("/var/mobile", "Library/Preferences"),
        std::string(productIdentifier) + ".plist");
}

void QuietrixPreferencesController::writeSettings() {
    const auto data = platform::PropertyListSerialization::dataWithPropertyList(
        settings(), platform::PropertyListFormat::Binary);
    if (!data) return;
    const std::string path = settingsFilePath();
    if (!FileManager::defaultManager().writeData_toFile(*data, path, platform::Write::InPlace)) {
        platform::log(
            stringWithFormat("com.velmora.Tessane: Error => Unable to save settings to %@ and settings: %@",
                             {path, settings().description()}));
    }
}

Value QuietrixPreferencesController::preferenceValue(const Row& specifier) {
    return settings()[specifier->identifier().value_or("")];
}

void QuietrixPreferencesController::setPreferenceValue_specifier(const Value& value, const Row& specifier) {
    const std::string key = specifier->identifier().value_or("");
    if (const Dictionary* old = settings().dictionary()) {
        Dictionary changed = *old;
        changed[key] = value;
        setSettings(std::move(changed));
    }
    writeSettings();
    if (key == enabledKey()) {
        if (value.isTrue()) {
            insertProfileSections();
        } else {
            removeProfileSections();
        }
        platform::CFNotificationCenterPostNotification(platform::CFNotificationCenterGetDarwinNotifyCenter(),
                                                       QuietrixEnabledOrDisableNotification, nullptr, nullptr,
                                                       true);
    }
    reloadSpecifiers();
}

void QuietrixPreferencesController::insertProfileSections() {
    insertSpecifier_atIndex_animated(PSSpecifier::groupSpecifierWithName(localized("Active Profiles")),
                                     activeGroupIndex, true);
    std::int64_t index = firstActiveRowIndex;
    for (const auto& row : *enabledProfilesSpecifiers()) insertSpecifier_atIndex_animated(row, index++, true);
    insertSpecifier_atIndex_animated(PSSpecifier::groupSpecifierWithName(localized("Inactive Profiles")),
                                     index++, true);
    for (const auto& row : *disabledProfilesSpecifiers())
        insertSpecifier_atIndex_animated(row, index++, true);
}

void QuietrixPreferencesController::removeProfileSections() {
    for (auto index = static_cast<std::int64_t>(specifiers()->size()) - 3; index > 1; --index) {
        removeSpecifierAtIndex_animated(index, true);
    }
}

// Cells and deleting

QuietrixPreferencesController::Row QuietrixPreferencesController::specifierAtIndexPath(IndexPath path) {
    return specifierAtIndex(indexForRow_inGroup(path.row, path.section));
}

std::shared_ptr<platform::PSTableCell> QuietrixPreferencesController::tableView_cellForRowAtIndexPath(
    const Table& table, IndexPath path) {
    auto cell = QuietrixBaseEditableSettingsController::tableView_cellForRowAtIndexPath(table, path);
    const auto row = specifierAtIndexPath(path);
    const auto profile = row ? row->userInfo().objectAs<QXProfile>() : nullptr;
    if (!profile) return cell;
    cell->detailTextLabel()->setTextColor(navBarPatternColor(getClass()));
    cell->detailTextLabel()->setText(
        profile->isAllDay() ? localized("All Day")
                            : stringWithFormat("%@ - %@", {profile->valueForKey("startTime").description(),
                                                           profile->valueForKey("endTime").description()}));
    return cell;
}

std::int64_t QuietrixPreferencesController::tableView_editingStyleForRowAtIndexPath(const Table&,
                                                                                    IndexPath path) {
    const auto row = specifierAtIndexPath(path);
    return row && row->userInfo().objectAs<QXProfile>() ? platform::UITableViewCellEditingStyleDelete
                                                        : platform::UITableViewCellEditingStyleNone;
}

void QuietrixPreferencesController::tableView_commitEditingStyle_forRowAtIndexPath(const Table&,
                                                                                   std::int64_t style,
                                                                                   IndexPath path) {
    if (style != platform::UITableViewCellEditingStyleDelete) return;
    const auto row = specifierAtIndexPath(path);
    const auto profile = row ? row->userInfo().objectAs<QXProfile>() : nullptr;
    if (!profile) return;
    const auto sheet = std::make_shared<UIAlertController>(
        std::nullopt,
        stringWithFormat(localized("Are you sure you want to delete the profile '%@'?"), {profile->title()}),
        platform::UIAlertControllerStyleActionSheet);
    const auto weakSelf = weak(this);
    sheet->addAction(
        {localized("Delete"), platform::UIAlertActionStyleDestructive, [weakSelf, profile, style, path] {
             if (const auto self = weakSelf.lock()) self->deleteConfirmed(profile, style, path);
         }});
    sheet->addAction({localized("Cancel"), platform::UIAlertActionStyleCancel, [weakSelf] {
                          const auto self = weakSelf.lock();
                          if (!self) return;
                          self->setEditing(false);
                          self->dismissViewControllerAnimated_completion(true, nullptr);
                      }});
    presentViewController_animated_completion(sheet, true, nullptr);
}

void QuietrixPreferencesController::deleteConfirmed(const std::shared_ptr<QXProfile>& profile,
                                                    std::int64_t style, IndexPath path) {
    QuietrixBaseEditableSettingsController::tableView_commitEditingStyle_forRowAtIndexPath(table(), style,
                                                                                           path);
    platform::GlobalQueue::shared().async([profile, weakSelf = weak(this)] {
        const auto failed = [weakSelf](const platform::Error& error) {
            platform::dispatchMain([weakSelf, error] {
                if (const auto self = weakSelf.lock()) qx_showError(*self, error);
            });
        };
        QXProfilesManager::sharedManager()->deleteProfile_success_failure(profile, nullptr, failed);
    });
}

// Life cycle and notifications

QuietrixPreferencesController::QuietrixPreferencesController(platform::Size) {
    setSettings(readSettings(settingsFilePath()));
}

QuietrixPreferencesController::~QuietrixPreferencesController() {
    NotificationCenter::defaultCenter().removeObserver(this);
}

void QuietrixPreferencesController::viewDidLoad() {
    QuietrixBaseEditableSettingsController::viewDidLoad();
    auto& center = NotificationCenter::defaultCenter();
    const auto self = shared(this);
    for (const auto name :
         {ProfileAddedNotification, ProfileChangedNotification, ProfileDeletedNotification}) {
        center.addObserver_selector_name_object(
            self, method("profilesUpdated:", &QuietrixPreferencesController::profilesUpdated), name, nullptr);
    }
    center.addObserver_selector_name_object(
        self,
        method("profileAppliedStateChanged:", &QuietrixPreferencesController::profileAppliedStateChanged),
        ProfileAppliedStateChangedNotification, nullptr);
}

void QuietrixPreferencesController::viewWillAppear(bool animated) {
    QuietrixBaseEditableSettingsController::viewWillAppear(animated);
    const auto& item = navigationItem();
    if (!item->rightBarButtonItem()) return;
    item->setRightBarButtonItem_animated(nullptr, false);
    item->setRightBarButtonItems_animated(
        {_editButtonBarItem(),
         makeShareButton(*this, method("__tessaneTwitterAction:",
                                       &QuietrixBaseEditableSettingsController::__tessaneTwitterAction))},
        true);
}

void QuietrixPreferencesController::profilesUpdated(const platform::Notification&) {
    refreshProfiles();
}

void QuietrixPreferencesController::profileAppliedStateChanged(const platform::Notification&) {
    refreshProfiles();
}

void QuietrixPreferencesController::refreshProfiles() {
    QXProfilesManager::sharedManager()->reloadProfiles();
    setEnabledProfilesSpecifiers(nullptr);
    setDisabledProfilesSpecifiers(nullptr);
    platform::dispatchMain([weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock()) self->reloadSpecifiers();
    });
}

// Adding

std::shared_ptr<UIBarButtonItem> QuietrixPreferencesController::_editButtonBarItem() {
    return std::make_shared<UIBarButtonItem>(
        platform::UIBarButtonSystemItemAdd, shared(this),
        method("addProfileAction:", &QuietrixPreferencesController::addProfileAction));
}

void QuietrixPreferencesController::addProfileAction(const std::shared_ptr<platform::Object>&) {
    const auto profile = QXProfile::defaultProfile();
    profile->setNewProfile(true);
    const auto row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        profile->title(), nullptr, {}, {}, "", PSCellType::Link, "");
    row->setIdentifier("title");
    row->setUserInfo(profile);
    const auto editor = platform::makeViewController(profileEditorClass);
    editor->setSpecifier(row);
    presentViewController_animated_completion(
        platform::UINavigationController::initWithRootViewController(editor), true, nullptr);
}

}  // namespace quietrix
