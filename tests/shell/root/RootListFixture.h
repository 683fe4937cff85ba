// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/foundation/PropertyList.h"
#include "profile/model/QXProfilesManager.h"
#include "shell/root/QuietrixPreferencesController.h"
#include "tests/shell/phone/PluginPhone.h"

namespace quietrix {

/// The root list on a phone with the profiles and the switch that a test asks for.
class RootListFixture : public testing::Test {
  protected:
    static constexpr const char* settingsPath = "/var/mobile/Library/Preferences/com.velmora.quietrix.plist";

    void writeSettings(platform::Value settings) {
        phone_.files->put(settingsPath, *platform::PropertyListSerialization::dataWithPropertyList(
                                            settings, platform::PropertyListFormat::XML));
    }
    void switchProductBefore(bool on) {
        writeSettings(platform::Dictionary{{"com.velmora.quietrix.enabled", on}, {"other", "kept"}});
    }
    std::shared_ptr<QXProfile> addProfile(const std::string& title, bool enabled) {
        const auto profile = QXProfile::defaultProfile();
        profile->setTitle(title);
        profile->setEnabled(enabled);
        QXProfilesManager::sharedManager()->addProfile_success_failure(profile, nullptr, nullptr);
        phone_.drain();
        return profile;
    }
    void open() {
        screen_ = std::make_shared<QuietrixPreferencesController>();
        navigation_ = phone_.show(screen_);
        phone_.drain();
        phone_.takeEvents();
    }
    std::shared_ptr<platform::PSSpecifier> rowNamed(const std::string& name) {
        for (const auto& row : *screen_->specifiers()) {
            if (row->name() == name) return row;
        }
        return nullptr;
    }
    std::int64_t indexOf(const std::string& name) { return screen_->indexOfSpecifier(rowNamed(name)); }
    std::shared_ptr<platform::PSTableCell> cellNamed(const std::string& name) {
        return screen_->cellAtIndex(indexOf(name));
    }
    void moveSwitch(bool on) {
        phone_.takeEvents();
        ASSERT_TRUE(cellNamed("Enabled")->userMovedControl(on));
    }
    static std::shared_ptr<platform::UIAlertController> alert() { return doubles::shownAlert(); }

    doubles::PluginPhone phone_;
    std::shared_ptr<QuietrixPreferencesController> screen_;
    std::shared_ptr<platform::UINavigationController> navigation_;
};

}  // namespace quietrix
