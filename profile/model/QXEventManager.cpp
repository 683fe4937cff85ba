// SPDX-License-Identifier: MIT
#include "profile/model/QXEventManager.h"

#include "platform/eventkit/EKCalendar.h"
#include "platform/eventkit/EKEventStore.h"

namespace quietrix {

using platform::Array;
using platform::Dictionary;

PLATFORM_REGISTER_CLASS(QXEventManager)

std::shared_ptr<QXEventManager> QXEventManager::sharedManager() {
    static const auto manager = std::make_shared<QXEventManager>();
    return manager;
}

platform::Value QXEventManager::groupedCalendars() const {
    std::map<std::string, Array, std::less<>> groups;
    for (const auto& calendar : platform::EKEventStore().calendars())
        groups[calendar->sourceTitle()].emplace_back(calendar);
    Dictionary grouped;
    for (auto& [title, calendars] : groups) grouped.emplace(title, std::move(calendars));
    return grouped;
}

}  // namespace quietrix
