// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "profile/editor/QuietrixProflePreferencesController.h"
#include "profile/model/QXProfilesManager.h"
#include "tests/shell/phone/PluginPhone.h"

namespace quietrix {

inline constexpr const char* statusBarLibrary =
    "/Library/MobileSubstrate/DynamicLibraries/libstatusbar.dylib";

/// The profile editor above another screen, opened by a row with the profile that a test asks for.
class EditorFixture : public testing::Test {
  protected:
    EditorFixture() {
        phone_.libraries->present.insert(statusBarLibrary);
        profile_->setTitle("Work");
        profile_->setEnabled(true);
        profile_->setAllDay(false);
        profile_->setStartTime("9:00 AM");
        profile_->setEndTime("5:00 PM");
        profile_->setPlayAlert(true);
    }
    /// Stores the profile first, unless it is a new one.
    void open() {
        if (!profile_->isNewProfile()) {
            QXProfilesManager::sharedManager()->addProfile_success_failure(profile_, nullptr, nullptr);
            phone_.drain();
            profile_ = QXProfilesManager::sharedManager()->profileByIdentifier_shouldReload(
                profile_->identifier(), false);
        }
        row_ = platform::PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            profile_->title(), nullptr, {}, {}, "QuietrixProflePreferencesController",
            platform::PSCellType::Link, "");
        row_->setUserInfo(profile_);
        screen_ = std::make_shared<QuietrixProflePreferencesController>();
        screen_->setSpecifier(row_);
        const auto beneath = std::make_shared<platform::PSViewController>();
        navigation_ = phone_.show(beneath);
        if (profile_->isNewProfile()) {
            beneath->presentViewController_animated_completion(
                platform::UINavigationController::initWithRootViewController(screen_), false, nullptr);
        } else {
            navigation_->pushViewController_animated(screen_, false);
        }
        phone_.drain();
        phone_.takeEvents();
    }
    std::int64_t indexOf(std::string_view identifier) {
        const auto& rows = *screen_->specifiers();
        for (std::size_t index = 0; index < rows.size(); ++index) {
            if (rows[index]->identifier() == identifier) return static_cast<std::int64_t>(index);
        }
        return -1;
    }
    std::shared_ptr<platform::PSSpecifier> rowOf(std::string_view identifier) {
        return screen_->specifierAtIndex(indexOf(identifier));
    }
    std::shared_ptr<platform::PSTableCell> cellOf(std::string_view identifier) {
        return screen_->cellAtIndex(indexOf(identifier));
    }
    /// What the user's own move of the row's control does, without what follows on the run loop.
    void move(std::string_view identifier, const platform::Value& value) {
        phone_.takeEvents();
        ASSERT_TRUE(cellOf(identifier)->userMovedControl(value));
    }
    /// The store's and the rows' events in order: "update ok", "insert 6 Active Hours animated".
    std::string happened() {
        std::string text;
        for (const auto& event : phone_.takeEvents()) {
            const platform::Value value(event);
            const std::string kind = value["event"].stringOr();
            std::string line;
            if (kind == "store") line = value["call"].stringOr() + (value["ok"].isTrue() ? " ok" : " failed");
            if (kind == "insert" || kind == "remove") {
                line = kind + " " + value["index"].description() + " " + value["name"].stringOr("-") +
                       (value["animated"].isTrue() ? " animated" : "");
            }
            if (line.empty()) continue;
            text += (text.empty() ? "" : "; ") + line;
        }
        return text;
    }
    void post(std::string_view name) {
        platform::NotificationCenter::defaultCenter().postNotificationName_object_userInfo(name, nullptr,
                                                                                           nullptr);
    }
    std::shared_ptr<QXProfile> stored() {
        return QXProfilesManager::sharedManager()->profileByIdentifier_shouldReload(profile_->identifier(),
                                                                                    true);
    }
    static std::shared_ptr<platform::UIAlertController> alert() { return doubles::shownAlert(); }

    doubles::PluginPhone phone_;
    std::shared_ptr<QXProfile> profile_ = QXProfile::defaultProfile();
    std::shared_ptr<platform::PSSpecifier> row_;
    std::shared_ptr<QuietrixProflePreferencesController> screen_;
    std::shared_ptr<platform::UINavigationController> navigation_;
};

}  // namespace quietrix
