// SPDX-License-Identifier: MIT
#include "RingerSettings.h"

#include <string>

#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/PropertyList.h"

namespace ringer::settings {

using platform::Array;
using platform::Dictionary;
using platform::FileManager;
using platform::PropertyListSerialization;
using platform::Result;
using platform::Value;

namespace {

constexpr double lockSeconds = 2;

/// Every key with what it is before anybody has set it.
const Dictionary& defaults() {
    static const Dictionary values{
        {"enabled", true},           {"volume", 0.5},          {"greeting", ""},
        {"bells", Array{}},          {"firstBell", "9:00 AM"}, {"lastBell", "5:00 PM"},
        {"silentCalendars", Array{}}};
    return values;
}

/// Empty when there is no file. What cannot be looked at is not the same as what is not there.
Result<Dictionary> stored() {
    const auto& files = FileManager::defaultManager();
    const auto stamp = files.stampAtPath(path);
    if (!stamp) return std::unexpected(stamp.error());
    if (!*stamp) return Dictionary();
    const auto data = files.contentsAtPath(path);
    if (!data) return std::unexpected(data.error());
    const auto list = PropertyListSerialization::propertyListWithData(*data);
    if (!list || list->dictionary() == nullptr) {
        return platform::failure("The settings file \"" + std::string(path) + "\" cannot be read: " +
                                 (list ? "it holds no dictionary." : list.error().localizedDescription));
    }
    return *list->dictionary();
}

Result<void> write(const Dictionary& values) {
    const auto data =
        PropertyListSerialization::dataWithPropertyList(values, platform::PropertyListFormat::Binary);
    if (!data) return std::unexpected(data.error());
    return FileManager::defaultManager().writeData_toFile(*data, path, platform::Write::Atomically);
}

/// The phone tells all processes by name; the screens hear it in their own centre, which lets go of those
/// that are left.
[[gnu::constructor]] void relay() {
    platform::CFNotificationCenterAddObserver(
        platform::CFNotificationCenterGetDarwinNotifyCenter(), nullptr,
        [](platform::DarwinNotificationCenter&, void*, const std::string& name, const void*, const Value&) {
            platform::NotificationCenter::defaultCenter().postNotificationName_object_userInfo(name, nullptr,
                                                                                               {});
        },
        changedNotification, nullptr, platform::CFNotificationSuspensionBehavior::DeliverImmediately);
}

}  // namespace

Value valueForKey(std::string_view key) {
    const auto fallback = defaults().find(key);
    if (fallback == defaults().end()) return nullptr;
    const auto values = stored();
    if (!values) return fallback->second;
    const auto found = values->find(key);
    const bool isUsable = found != values->end() && found->second.type() == fallback->second.type();
    return isUsable ? found->second : fallback->second;
}

Result<void> setValue_forKey(const Value& value, std::string_view key) {
    if (!defaults().contains(key))
        return platform::failure("There is no setting \"" + std::string(key) + "\".");
    return change([&](Dictionary& values) { values.insert_or_assign(key, value); });
}

Result<void> change(const std::function<void(Dictionary&)>& edit) {
    const auto lock = FileManager::defaultManager().lockExclusively(path, lockSeconds);
    if (!lock) return std::unexpected(lock.error());
    auto values = stored();
    if (!values) return std::unexpected(values.error());
    edit(*values);
    if (const auto written = write(*values); !written) return written;
    platform::CFNotificationCenterPostNotification(platform::CFNotificationCenterGetDarwinNotifyCenter(),
                                                   changedNotification, nullptr, {}, true);
    return {};
}

Result<void> reset() {
    return change([](Dictionary& values) {
        for (const auto& [key, value] : defaults()) values.erase(key);
    });
}

}  // namespace ringer::settings
