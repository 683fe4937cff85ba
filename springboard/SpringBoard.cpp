// SPDX-License-Identifier: MIT
#include "springboard/SpringBoard.h"

#include <chrono>

namespace springboard {

using namespace platform;

void SpringBoard::observe() {
    for (const std::string_view name : observedNames) {
        CFNotificationCenterAddObserver(CFNotificationCenterGetDarwinNotifyCenter(), this, received, name,
                                        nullptr, CFNotificationSuspensionBehavior::DeliverImmediately);
    }
}

void SpringBoard::postAppliedStateChanged() {
    CFNotificationCenterPostNotification(CFNotificationCenterGetDarwinNotifyCenter(), appliedStateChanged,
                                         nullptr, {}, true);
}

void SpringBoard::received(DarwinNotificationCenter& /*center*/, void* observer, const std::string& name,
                           const void* /*object*/, const Value& /*userInfo*/) {
    static_cast<SpringBoard*>(observer)->log_.write(std::chrono::system_clock::now(), name);
}

}  // namespace springboard
