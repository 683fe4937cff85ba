// SPDX-License-Identifier: MIT
// The main settings file: where it is, reading it, writing it. Its one key of this plug-in is the product's
// switch; the others are kept.
#include "platform/foundation/FileManager.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/PropertyList.h"
#include "shell/base/Localization.h"
#include "shell/root/QuietrixPreferencesController.h"

namespace quietrix {

using platform::FileManager;
using platform::PropertyListSerialization;
using platform::Value;

namespace {

constexpr const char* productIdentifier = "com.velmora.quietrix";

/// Nil when the file is missing. One that is there but holds no dictionary is left alone, with one log line.
Value readSettings(const std::string& path) {
    const auto& files = FileManager::defaultManager();
    if (!files.fileExistsAtPath(path)) return nullptr;
    std::string reason;
    if (const auto data = files.contentsAtPath(path); !data) {
        reason = data.error().localizedDescription;
    } else if (const auto list = PropertyListSerialization::propertyListWithData(*data); !list) {
        reason = list.error().localizedDescription;
    } else if (!list->dictionary()) {
        reason = "The root of the property list is no dictionary.";
    } else {
        return *list;
    }
    platform::log("com.velmora.Tessane: Error => Unable to read settings from " + path + ": " + reason);
    return nullptr;
}

}  // namespace

QuietrixPreferencesController::QuietrixPreferencesController(platform::Size) {
    setSettings(readSettings(settingsFilePath()));
}

std::string QuietrixPreferencesController::enabledKey() {
    return std::string(productIdentifier) + ".enabled";
}

std::string QuietrixPreferencesController::settingsFilePath() const {
    return platform::stringByAppendingPathComponent(
        platform::stringByAppendingPathComponent("/var/mobile", "Library/Preferences"),
        std::string(productIdentifier) + ".plist");
}

void QuietrixPreferencesController::writeSettings() {
    const std::string path = settingsFilePath();
    const auto data =
        PropertyListSerialization::dataWithPropertyList(settings(), platform::PropertyListFormat::Binary);
    if (!data || FileManager::defaultManager().writeData_toFile(*data, path, platform::Write::InPlace))
        return;
    platform::log(
        stringWithFormat("com.velmora.Tessane: Error => Unable to save settings to %@ and settings: %@",
                         {path, settings().description()}));
}

}  // namespace quietrix
