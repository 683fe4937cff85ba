// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string_view>

#include "platform/foundation/DarwinNotificationCenter.h"
#include "springboard/NotificationLog.h"

namespace springboard {

/// The phone's system shell: it observes the notifications that the engine inside it lives by and writes them
/// to the log. It silences nothing. One for a process, on its main thread; it must live as long as
/// notifications are delivered.
class SpringBoard {
  public:
    static constexpr std::string_view appliedStateChanged =
        "com.velmora.ProfileAppliedStateChangedNotification";
    static constexpr std::array<std::string_view, 5> observedNames{
        "com.velmora.QuietrixEnabledOrDisableNotification", "com.velmora.ProfileAddedNotification",
        "com.velmora.ProfileChangedNotification", "com.velmora.ProfileDeletedNotification",
        appliedStateChanged};

    explicit SpringBoard(NotificationLog& log) : log_(log) {}
    SpringBoard(const SpringBoard&) = delete;
    SpringBoard& operator=(const SpringBoard&) = delete;

    void observe();
    /// Tells the open screens that what they show of the profiles' state may be out of date.
    static void postAppliedStateChanged();

  private:
    static void received(platform::DarwinNotificationCenter& center, void* observer, const std::string& name,
                         const void* object, const platform::Value& userInfo);

    NotificationLog& log_;
};

}  // namespace springboard
