// SPDX-License-Identifier: MIT
#include "shell/root/BundleEntry.h"

#include "profile/model/QXProfilesManager.h"
#include "shell/base/LocalNotifications.h"
#include "shell/base/NotificationNames.h"

namespace quietrix {

using platform::CFNotificationCallback;
using platform::DarwinNotificationCenter;
using platform::Value;

[[gnu::constructor]] void CHConstructor2386() {
    const auto observe = [](CFNotificationCallback callback, std::string_view name) {
        platform::CFNotificationCenterAddObserver(
            platform::CFNotificationCenterGetDarwinNotifyCenter(), nullptr, callback, name, nullptr,
            platform::CFNotificationSuspensionBehavior::DeliverImmediately);
    };
    observe(profileAppliedCallBack, ProfileAppliedStateChangedNotification);
    observe(profileDataChangedCallBack, ProfileAddedNotification);
    observe(profileDataChangedCallBack, ProfileChangedNotification);
    observe(profileDataChangedCallBack, ProfileDeletedNotification);
}

void profileAppliedCallBack(DarwinNotificationCenter&, void*, const std::string& name, const void*,
                            const Value&) {
    QXProfilesManager::sharedManager()->reloadProfiles();
    postLocally(name);
}

void profileDataChangedCallBack(DarwinNotificationCenter&, void*, const std::string&, const void*,
                                const Value&) {
    postLocally(ProfileAppliedStateChangedNotification);
}

}  // namespace quietrix
