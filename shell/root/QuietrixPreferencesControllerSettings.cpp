// SPDX-License-Identifier: MIT
// The main settings file: where it is, reading it, writing it. Its one key of this plug-in is the product's
// switch; the others are kept.
#include "platform/foundation/LogSink.h"
#include "shell/base/Localization.h"
#include "shell/base/MainSettings.h"
#include "shell/root/QuietrixPreferencesController.h"

namespace quietrix {

using platform::Value;

namespace {

/// Nil when the file is missing. One that is there but holds no dictionary is left alone, with one log line.
Value settingsInFile() {
    auto settings = readMainSettings();
    if (settings) return *std::move(settings);
    platform::log("com.velmora.Tessane: Error => Unable to read settings from " + mainSettingsPath() + ": " +
                  settings.error().localizedDescription);
    return nullptr;
}

}  // namespace

QuietrixPreferencesController::QuietrixPreferencesController(platform::Size) {
    setSettings(settingsInFile());
}

std::string QuietrixPreferencesController::enabledKey() {
    return productSwitchKey();
}

std::string QuietrixPreferencesController::settingsFilePath() const {
    return mainSettingsPath();
}

void QuietrixPreferencesController::writeSettings() {
    if (writeMainSettings(settings())) return;
    platform::log(
        stringWithFormat("com.velmora.Tessane: Error => Unable to save settings to %@ and settings: %@",
                         {settingsFilePath(), settings().description()}));
}

}  // namespace quietrix
