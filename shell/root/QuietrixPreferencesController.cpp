// SPDX-License-Identifier: MIT
#include "shell/root/QuietrixPreferencesController.h"

#include "platform/foundation/RunLoop.h"
#include "platform/preferences/PSPlaceholderController.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UINavigationController.h"
#include "profile/model/QXProfilesManager.h"
#include "shell/base/ErrorAlert.h"
#include "shell/base/LocalNotifications.h"
#include "shell/base/Localization.h"
#include "shell/base/MainSettings.h"
#include "shell/base/NotificationNames.h"
#include "shell/chrome/EditedProfile.h"

namespace quietrix {

using platform::Dictionary;
using platform::IndexPath;
using platform::method;
using platform::NotificationCenter;
using platform::UIAlertController;
using platform::UIBarButtonItem;
using platform::Value;

namespace {

/// Header group and switch stand ahead of the profile sections, whose first group is followed by its rows.
constexpr std::int64_t activeGroupIndex = 2;
constexpr std::int64_t firstActiveRowIndex = 3;

}  // namespace

// The switch

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
        announceProductSwitch();
    }
    reloadSpecifiers();
}

void QuietrixPreferencesController::insertProfileSections() {
    insertSpecifier_atIndex_animated(activeGroup(), activeGroupIndex, true);
    std::int64_t index = firstActiveRowIndex;
    for (const auto& row : *enabledProfilesSpecifiers()) insertSpecifier_atIndex_animated(row, index++, true);
    insertSpecifier_atIndex_animated(inactiveGroup(), index++, true);
    for (const auto& row : *disabledProfilesSpecifiers())
        insertSpecifier_atIndex_animated(row, index++, true);
}

void QuietrixPreferencesController::removeProfileSections() {
    for (auto index = static_cast<std::int64_t>(specifiers()->size()) - 3; index > 1; --index) {
        removeSpecifierAtIndex_animated(index, true);
    }
}

// Deleting

std::int64_t QuietrixPreferencesController::tableView_editingStyleForRowAtIndexPath(const Table&,
                                                                                    IndexPath path) {
    return profileOfRow(specifierAtIndexPath(path)) ? platform::UITableViewCellEditingStyleDelete
                                                    : platform::UITableViewCellEditingStyleNone;
}

void QuietrixPreferencesController::tableView_commitEditingStyle_forRowAtIndexPath(const Table&,
                                                                                   std::int64_t style,
                                                                                   IndexPath path) {
    if (style != platform::UITableViewCellEditingStyleDelete) return;
    const auto profile = profileOfRow(specifierAtIndexPath(path));
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
    platform::GlobalQueue::shared().async([profile, show = errorShownOn(*this, Screen::MayGo)] {
        const auto failed = [show](const platform::Error& error) {
            platform::dispatchMain([show, error] { show(error); });
        };
        QXProfilesManager::sharedManager()->deleteProfile_success_failure(profile, nullptr, failed);
    });
}

// Life cycle and notifications

QuietrixPreferencesController::~QuietrixPreferencesController() {
    NotificationCenter::defaultCenter().removeObserver(this);
}

void QuietrixPreferencesController::viewDidLoad() {
    QuietrixBaseEditableSettingsController::viewDidLoad();
    for (const auto name :
         {ProfileAddedNotification, ProfileChangedNotification, ProfileDeletedNotification}) {
        observeLocally(name, *this, "profilesUpdated:", &QuietrixPreferencesController::profilesUpdated);
    }
    observeLocally(ProfileAppliedStateChangedNotification, *this,
                   "profileAppliedStateChanged:", &QuietrixPreferencesController::profileAppliedStateChanged);
}

void QuietrixPreferencesController::viewWillAppear(bool animated) {
    QuietrixBaseEditableSettingsController::viewWillAppear(animated);
    const auto& item = navigationItem();
    if (!item->rightBarButtonItem()) return;
    item->setRightBarButtonItem_animated(nullptr, false);
    item->setRightBarButtonItems_animated({_editButtonBarItem(), makeShareButton(*this, twitterAction())},
                                          true);
}

void QuietrixPreferencesController::profileAppliedStateChanged(const platform::Notification& notification) {
    profilesUpdated(notification);
}

void QuietrixPreferencesController::profilesUpdated(const platform::Notification&) {
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
    const auto editor = platform::makeViewController(profileEditorClass);
    editor->setSpecifier(profileRow(profile, ""));
    presentViewController_animated_completion(
        platform::UINavigationController::initWithRootViewController(editor), true, nullptr);
}

}  // namespace quietrix
