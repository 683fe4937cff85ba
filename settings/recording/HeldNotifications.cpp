// SPDX-License-Identifier: MIT
#include "settings/recording/HeldNotifications.h"

#include <utility>

namespace settings {

platform::Result<void> HeldNotifications::start(Receiver receiver) {
    receiver_ = std::move(receiver);
    if (!others_) return {};
    return others_->start([this](const std::string& name) {
        const std::lock_guard lock(mutex_);
        held_.push_back(name);
    });
}

void HeldNotifications::post(const std::string& name) {
    deliver(name);
    if (others_) others_->post(name);
}

bool HeldNotifications::holdsAny() const {
    const std::lock_guard lock(mutex_);
    return !held_.empty();
}

std::vector<std::string> HeldNotifications::takeHeld() {
    const std::lock_guard lock(mutex_);
    return std::exchange(held_, {});
}

void HeldNotifications::deliver(const std::string& name) {
    if (listener_) listener_(name);
    if (receiver_) receiver_(name);
}

}  // namespace settings
