// SPDX-License-Identifier: MIT
#include "platform/foundation/DarwinNotificationCenter.h"

#include <algorithm>
#include <utility>

#include "platform/foundation/Device.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/RunLoop.h"

namespace platform {

DarwinNotificationCenter& DarwinNotificationCenter::shared() {
    // Never destroyed: a transport's thread may still deliver while the process ends.
    static DarwinNotificationCenter& center = *new DarwinNotificationCenter;
    return center;
}

Result<void> DarwinNotificationCenter::connect() {
    const std::shared_ptr<NotificationTransport> transport = Device::current().notifications;
    std::uint64_t connection = 0;
    {
        const std::lock_guard lock(mutex_);
        if (!transport || transport_.lock() == transport) return {};
        connection = ++connection_;
    }
    // Before the transport's thread asks for it: who asks first is the loop's main thread.
    RunLoop& loop = RunLoop::main();
    Result<void> started =
        transport->start([this, connection](const std::string& name) { received(name, connection); });
    if (!started) return started;

    const std::uint64_t check = loop.addPendingCheck([this, watched = std::weak_ptr(transport)] {
        const auto living = watched.lock();
        if (living && living->hasPending()) return true;
        forgetLost();
        return false;
    });
    std::uint64_t oldCheck = 0;
    {
        const std::lock_guard lock(mutex_);
        transport_ = transport;
        oldCheck = std::exchange(pendingCheck_, check);
    }
    loop.removePendingCheck(oldCheck);
    return {};
}

void DarwinNotificationCenter::reset() {
    std::uint64_t check = 0;
    {
        const std::lock_guard lock(mutex_);
        registrations_.clear();
        waiting_.clear();
        underWay_.clear();
        transport_.reset();
        check = std::exchange(pendingCheck_, 0);
        ++connection_;
    }
    RunLoop::main().removePendingCheck(check);
}

void DarwinNotificationCenter::addObserver(Registration registration) {
    const std::lock_guard lock(mutex_);
    registrations_.push_back(std::move(registration));
}

void DarwinNotificationCenter::post(const std::string& name) {
    const Journal::Id posting = Journal::shared().record("darwin", Journal::Named{name});
    std::shared_ptr<NotificationTransport> transport;
    std::uint64_t connection = 0;
    {
        const std::lock_guard lock(mutex_);
        if (posting != 0) underWay_.try_emplace(name, posting);
        transport = transport_.lock();
        connection = connection_;
    }
    if (transport) {
        transport->post(name);
    } else {
        received(name, connection);
    }
}

std::vector<DarwinNotificationCenter::Registration> DarwinNotificationCenter::registrations() const {
    const std::lock_guard lock(mutex_);
    return registrations_;
}

void DarwinNotificationCenter::received(const std::string& name, std::uint64_t connection) {
    {
        const std::lock_guard lock(mutex_);
        if (connection != connection_ || std::ranges::find(waiting_, name) != waiting_.end()) return;
        waiting_.push_back(name);
    }
    RunLoop::main().post([this] { deliverNext(); });
}

void DarwinNotificationCenter::forgetLost() {
    const std::lock_guard lock(mutex_);
    if (waiting_.empty()) underWay_.clear();
}

void DarwinNotificationCenter::deliverNext() {
    std::string name;
    std::vector<Registration> present;
    Value cause;
    {
        const std::lock_guard lock(mutex_);
        if (waiting_.empty()) return;
        // Taken out before the callbacks run: what is posted from now on is a new delivery.
        name = std::move(waiting_.front());
        waiting_.pop_front();
        present = registrations_;
        if (const auto posted = underWay_.extract(name)) cause = posted.mapped();
    }
    const Journal::Causing causing(cause);
    const Journal::Course course("darwinReceived", Journal::Named{name});
    for (const Registration& registration : present) {
        if (registration.name == name)
            registration.callback(*this, registration.observer, name, nullptr, Value());
    }
}

DarwinNotificationCenter& CFNotificationCenterGetDarwinNotifyCenter() {
    return DarwinNotificationCenter::shared();
}

void CFNotificationCenterAddObserver(DarwinNotificationCenter& center, void* observer,
                                     CFNotificationCallback callback, std::string_view name,
                                     const void* /*object*/,
                                     CFNotificationSuspensionBehavior suspensionBehavior) {
    center.addObserver({observer, callback, std::string(name), suspensionBehavior});
}

void CFNotificationCenterPostNotification(DarwinNotificationCenter& center, std::string_view name,
                                          const void* /*object*/, const Value& /*userInfo*/,
                                          bool /*deliverImmediately*/) {
    center.post(std::string(name));
}

}  // namespace platform
