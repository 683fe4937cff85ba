// SPDX-License-Identifier: MIT
#include "platform/foundation/NotificationCenter.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <utility>

#include "platform/foundation/Journal.h"

namespace platform {

namespace {

/// Names whose receivers are remembered; there are far fewer, unless somebody posts made-up ones.
constexpr std::size_t mostDeliveries = 64;

}  // namespace

/// What each delivery looks at comes first, and lies in one line of the processor's cache.
struct alignas(64) NotificationCenter::Registration {
    std::weak_ptr<Object> observer;
    std::atomic<bool> removed = false;
    bool everySender;
    Action selector;
    /// Finds the registrations of an observer that is being destroyed and cannot be locked any more.
    const Object* address;
    std::string name;
    std::weak_ptr<Object> object;

    bool takesFrom(const std::shared_ptr<Object>& sender) const {
        return everySender || (sender && object.lock() == sender);
    }
};

struct NotificationCenter::Delivery {
    Value name;
    /// What most postings are: without a sender and user information.
    Notification plain;
    std::vector<std::shared_ptr<Registration>> receivers;
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
    registration->everySender = object == nullptr;
    registration->selector = std::move(selector);
    registration->address = observer.get();
    registration->name = name;
    registration->object = object;

    // What is taken out is destroyed after the lock is given back: a selector may own things whose
    // destructors remove observers.
    std::vector<std::shared_ptr<Registration>> taken;
    Deliveries stale;
    const std::lock_guard lock(mutex_);
    stale.swap(deliveries_);
    std::erase_if(registrations_, [&](const std::shared_ptr<Registration>& known) {
        if (!known->observer.expired()) return false;
        taken.push_back(known);
        return true;
    });
    registrations_.push_back(std::move(registration));
}

void NotificationCenter::removeObserver(const Object* observer) {
    std::vector<std::shared_ptr<Registration>> taken;
    Deliveries stale;
    const std::lock_guard lock(mutex_);
    stale.swap(deliveries_);
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
    const std::shared_ptr<const Delivery> delivery = deliveryOf(name);
    const Journal::Course course("local", Journal::Named{delivery->name});
    if (object || !userInfo.isNil()) {
        deliver(*delivery, {delivery->plain.name, object, userInfo});
    } else {
        deliver(*delivery, delivery->plain);
    }
}

std::shared_ptr<const NotificationCenter::Delivery> NotificationCenter::deliveryOf(std::string_view name) {
    Deliveries stale;
    const std::lock_guard lock(mutex_);
    const auto known = deliveries_.find(name);
    if (known != deliveries_.end()) return known->second;
    auto delivery = std::make_shared<Delivery>();
    delivery->name = Value(name);
    delivery->plain.name = name;
    std::ranges::copy_if(
        registrations_, std::back_inserter(delivery->receivers),
        [&](const auto& registration) { return registration->name.empty() || registration->name == name; });
    if (deliveries_.size() >= mostDeliveries) stale.swap(deliveries_);
    deliveries_.emplace(name, delivery);
    return delivery;
}

void NotificationCenter::deliver(const Delivery& delivery, const Notification& notification) {
    for (const std::shared_ptr<Registration>& registration : delivery.receivers) {
        if (registration->removed || !registration->takesFrom(notification.object)) continue;
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

std::map<std::string, std::size_t> NotificationCenter::observerCounts() const {
    std::map<std::string, std::size_t> counts;
    const std::lock_guard lock(mutex_);
    for (const auto& registration : registrations_) {
        if (!registration->observer.expired()) ++counts[registration->name];
    }
    return counts;
}

void NotificationCenter::reset() {
    std::vector<std::shared_ptr<Registration>> taken;
    Deliveries stale;
    const std::lock_guard lock(mutex_);
    stale.swap(deliveries_);
    taken.swap(registrations_);
    for (const auto& registration : taken) registration->removed = true;
}

}  // namespace platform
