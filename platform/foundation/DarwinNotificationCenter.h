// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/NotificationTransport.h"
#include "platform/foundation/Value.h"

namespace platform {

class DarwinNotificationCenter;

/// The platform's notification callback: centre, observer, name, object, user information. Darwin
/// notifications carry a name only, so the last two are null and nil.
using CFNotificationCallback = void (*)(DarwinNotificationCenter& center, void* observer,
                                        const std::string& name, const void* object, const Value& userInfo);

/// What becomes of notifications while the observer's process is suspended.
enum class CFNotificationSuspensionBehavior : std::int64_t {
    Drop = 1,
    Coalesce = 2,
    Hold = 3,
    DeliverImmediately = 4
};

/// The system-wide notification centre. What is posted reaches every process of the phone, this one included;
/// delivery is on the main thread through the main run loop, in the order of registration. Posting and
/// delivering are written to the journal ("darwin", "darwinReceived").
class DarwinNotificationCenter {
  public:
    /// Who is called for which name, as it was given to addObserver.
    struct Registration {
        void* observer;
        CFNotificationCallback callback;
        std::string name;
        CFNotificationSuspensionBehavior suspensionBehavior;
    };

    static DarwinNotificationCenter& shared();

    /// Connects the centre to the installed device's transport; registrations may come before or after.
    /// Without a transport, postings reach this process only. When it is connected already, a success. Main
    /// thread.
    Result<void> connect();
    /// Forgets the registrations, the transport and what was not delivered yet. For tests, between cases.
    /// Main thread.
    void reset();

    /// Any thread. A registration is never removed.
    void addObserver(Registration registration);
    /// Any thread; never calls a callback itself. Equal names that wait for the main thread are delivered as
    /// one.
    void post(const std::string& name);
    /// In the order of registration.
    std::vector<Registration> registrations() const;

  private:
    void received(const std::string& name, std::uint64_t connection);
    void deliverNext();
    /// When nothing is on its way any more, what this process posted and did not get is lost.
    void forgetLost();

    mutable std::mutex mutex_;
    std::vector<Registration> registrations_;
    /// Names that wait for the main thread, each once, one main-loop task for each.
    std::deque<std::string> waiting_;
    /// By name, the posting of this process whose notification is on its way: what its arrival comes of.
    std::map<std::string, Journal::Id> underWay_;
    /// The device's; empty before connect().
    std::weak_ptr<NotificationTransport> transport_;
    /// Tells the connections apart, so that a late name of an earlier transport is dropped.
    std::uint64_t connection_ = 0;
    std::uint64_t pendingCheck_ = 0;
};

/// The phone's own spellings of the above.
DarwinNotificationCenter& CFNotificationCenterGetDarwinNotifyCenter();
void CFNotificationCenterAddObserver(DarwinNotificationCenter& center, void* observer,
                                     CFNotificationCallback callback, std::string_view name,
                                     const void* object, CFNotificationSuspensionBehavior suspensionBehavior);
void CFNotificationCenterPostNotification(DarwinNotificationCenter& center, std::string_view name,
                                          const void* object, const Value& userInfo, bool deliverImmediately);

}  // namespace platform
