// SPDX-License-Identifier: MIT
#include "shell/base/MainSettings.h"

#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/PropertyList.h"
#include "shell/base/NotificationNames.h"

namespace quietrix {

using platform::FileManager;
using platform::PropertyListSerialization;
using platform::Result;
using platform::Value;

namespace {

constexpr const char* productIdentifier = "com.velmora.quietrix";

}  // namespace

std::string mainSettingsPath() {
    return platform::stringByAppendingPathComponent(
        platform::stringByAppendingPathComponent("/var/mobile", "Library/Preferences"),
        std::string(productIdentifier) + ".plist");
}

std::string productSwitchKey() {
    return std::string(productIdentifier) + ".enabled";
}

Result<Value> readMainSettings() {
    const auto& files = FileManager::defaultManager();
    if (!files.fileExistsAtPath(mainSettingsPath())) return Value();
    const auto data = files.contentsAtPath(mainSettingsPath());
    if (!data) return std::unexpected(data.error());
    auto list = PropertyListSerialization::propertyListWithData(*data);
    if (list && !list->dictionary())
        return platform::failure("The root of the property list is no dictionary.");
    return list;
}

Result<void> writeMainSettings(const Value& settings) {
    const auto data =
        PropertyListSerialization::dataWithPropertyList(settings, platform::PropertyListFormat::Binary);
    if (!data) return {};
    return FileManager::defaultManager().writeData_toFile(*data, mainSettingsPath(),
                                                          platform::Write::InPlace);
}

void announceProductSwitch() {
    platform::CFNotificationCenterPostNotification(platform::CFNotificationCenterGetDarwinNotifyCenter(),
                                                   QuietrixEnabledOrDisableNotification, nullptr, nullptr,
                                                   true);
}

}  // namespace quietrix
