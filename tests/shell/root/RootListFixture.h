// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/foundation/PropertyList.h"
#include "shell/root/QuietrixPreferencesController.h"
#include "tests/doubles/ProfileScreenFixture.h"

namespace quietrix {

/// The root list on a phone with the profiles and the switch that a test asks for.
class RootListFixture : public doubles::PluginScreenFixture<QuietrixPreferencesController> {
  protected:
    static constexpr const char* settingsPath = "/var/mobile/Library/Preferences/com.velmora.quietrix.plist";

    void writeSettings(platform::Value settings) {
        phone_.files->put(settingsPath, platform::PropertyListSerialization::dataWithPropertyList(
                                            settings, platform::PropertyListFormat::XML)
                                            .value());
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
    void open() { openScreen(doubles::Place::First); }
    /// The rows stand under their names: those of the profiles have one identifier. Null for none.
    std::shared_ptr<platform::PSSpecifier> findRow(const std::string& name) {
        for (const auto& row : *screen_->specifiers()) {
            if (row->name() == name) return row;
        }
        return nullptr;
    }
    std::shared_ptr<platform::PSSpecifier> rowNamed(const std::string& name,
                                                    const Where& where = Where::current()) {
        const auto row = findRow(name);
        if (!row) doubles::endTest("There is no \"" + name + "\" in " + doubles::rowNames(*screen_), where);
        return row;
    }
    std::int64_t indexNamed(const std::string& name, const Where& where = Where::current()) {
        return screen_->indexOfSpecifier(rowNamed(name, where));
    }
    std::shared_ptr<platform::PSTableCell> cellNamed(const std::string& name,
                                                     const Where& where = Where::current()) {
        return cellAt(indexNamed(name, where), where);
    }
    void moveSwitch(bool on, const Where& where = Where::current()) {
        move("com.velmora.quietrix.enabled", on, where);
    }
};

}  // namespace quietrix
