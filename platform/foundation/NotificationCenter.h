// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/foundation/Method.h"
#include "platform/foundation/Value.h"

namespace platform {

/// A notification as an observer gets it.
struct Notification {
    std::string name;
    std::shared_ptr<Object> object;
    Value userInfo;
};

/// The process's own notification centre. Posting calls the observers at once, on the posting thread, in the
/// order of their registration. Observers are held weakly: nothing is delivered to a destroyed one. Observers
/// may be added and removed during a delivery: one removed is not called any more, one added is called from
/// the next posting on. Usable from any thread; each posting is written to the journal ("local").
class NotificationCenter {
  public:
    using Action = Method<void(const Notification&)>;

    static NotificationCenter& defaultCenter();

    /// An empty name observes every name; an empty object every sender. Observing twice delivers twice.
    void addObserver_selector_name_object(const std::shared_ptr<Object>& observer, Action selector,
                                          std::string_view name, const std::shared_ptr<Object>& object);
    /// Removes every registration of the observer; called from its destructor too, hence the plain pointer.
    void removeObserver(const Object* observer);
    void postNotificationName_object_userInfo(std::string_view name, const std::shared_ptr<Object>& object,
                                              const Value& userInfo);
    /// How many registrations whose observer still lives there are for exactly that name; for tests.
    std::size_t observerCount(std::string_view name) const;
    /// The same for every name that has any, "" being those that observe every name.
    std::map<std::string, std::size_t> observerCounts() const;
    /// Forgets every registration. For tests, between cases.
    void reset();

  private:
    struct Registration;
    /// Whom a name is delivered to, worked out when it is first posted after a change of the registrations.
    struct Delivery;
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
    };
    using Deliveries =
        std::unordered_map<std::string, std::shared_ptr<const Delivery>, NameHash, std::equal_to<>>;

    std::shared_ptr<const Delivery> deliveryOf(std::string_view name);
    static void deliver(const Delivery& delivery, const Notification& notification);

    mutable std::mutex mutex_;
    std::vector<std::shared_ptr<Registration>> registrations_;
    Deliveries deliveries_;
};

}  // namespace platform
