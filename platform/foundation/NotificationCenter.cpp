// SPDX-License-Identifier: MIT
#include "platform/foundation/NotificationCenter.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "platform/foundation/Journal.h"

namespace platform {

struct NotificationCenter::Registration {
    std::weak_ptr<Object> observer;
    /// Finds the registrations of an observer that is being destroyed and cannot be locked any more.
    const Object* address;
    Action selector;
    std::string name;
    bool everySender;
    std::weak_ptr<Object> object;
    std::atomic<bool> removed = false;

    bool matches(const Notification& notification) const {
        if (!name.empty() && name != notification.name) return false;
        if (everySender) return true;
        const std::shared_ptr<Object> sender = object.lock();
        return sender && sender == notification.object;
    }
};

NotificationCenter& NotificationCenter::defaultCenter() {
    // Never destroyed: observers that are static objects remove themselves in their destructors.
    static NotificationCenter& center = *new NotificationCenter;
    return center;
}

void NotificationCenter::addObserver_selector_name_object(const std::shared_ptr<Object>& observer,
                                                          Action selector, std::string_view name,
                                                          const std::shared_ptr<Object>& object) {
    if (!observer) return;
    auto registration = std::make_shared<Registration>();
    registration->observer = observer;
    registration->address = observer.get();
    registration->selector = std::move(selector);
    registration->name = name;
    registration->everySender = object == nullptr;
    registration->object = object;

    // What is taken out is destroyed after the lock is given back: a selector may own things whose
    // destructors remove observers.
    std::vector<std::shared_ptr<Registration>> taken;
    const std::lock_guard lock(mutex_);
    std::erase_if(registrations_, [&](const std::shared_ptr<Registration>& known) {
        if (!known->observer.expired()) return false;
        taken.push_back(known);
        return true;
    });
    registrations_.push_back(std::move(registration));
}

void NotificationCenter::removeObserver(const Object* observer) {
    std::vector<std::shared_ptr<Registration>> taken;
    const std::lock_guard lock(mutex_);
    std::erase_if(registrations_, [&](const std::shared_ptr<Registration>& known) {
        if (known->address != observer) return false;
        known->removed = true;
        taken.push_back(known);
        return true;
    });
}

void NotificationCenter::postNotificationName_object_userInfo(std::string_view name,
                                                              const std::shared_ptr<Object>& object,
                                                              const Value& userInfo) {
    const Journal::Course course("local", {{"name", name}});
    const Notification notification{std::string(name), object, userInfo};
    std::vector<std::shared_ptr<Registration>> present;
    {
        const std::lock_guard lock(mutex_);
        present = registrations_;
    }
    for (const std::shared_ptr<Registration>& registration : present) {
        if (registration->removed || !registration->matches(notification)) continue;
        // The observer is kept alive while it is called, and may be released by this thread afterwards.
        const std::shared_ptr<Object> observer = registration->observer.lock();
        if (observer) registration->selector(*observer, notification);
    }
}

std::size_t NotificationCenter::observerCount(std::string_view name) const {
    const std::lock_guard lock(mutex_);
    return static_cast<std::size_t>(std::ranges::count_if(registrations_, [&](const auto& registration) {
        return registration->name == name && !registration->observer.expired();
    }));
}

void NotificationCenter::reset() {
    std::vector<std::shared_ptr<Registration>> taken;
    const std::lock_guard lock(mutex_);
    taken.swap(registrations_);
    for (const auto& registration : taken) registration->removed = true;
}

}  // namespace platform
