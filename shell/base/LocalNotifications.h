// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/foundation/NotificationCenter.h"

namespace quietrix {

/// From now on the screen's method hears the name in the process's own centre, whoever posts it. A destroyed
/// screen hears nothing. Main thread.
template <class Screen>
void observeLocally(std::string_view name, Screen& screen, std::string selector,
                    void (Screen::*handler)(const platform::Notification&)) {
    platform::NotificationCenter::defaultCenter().addObserver_selector_name_object(
        screen.shared(&screen), platform::method(std::move(selector), handler), name, nullptr);
}

/// Posts the name in the process's own centre, with neither object nor user info.
inline void postLocally(std::string_view name) {
    platform::NotificationCenter::defaultCenter().postNotificationName_object_userInfo(name, nullptr, {});
}

}  // namespace quietrix
