// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/Value.h"

namespace platform {

/// What the running phone did, in the order in which each thing began: rows inserted and removed,
/// notifications, files written, store calls, log lines. It is kept only while somebody reads it. Usable from
/// any thread.
///
/// An event is a dictionary whose "event" names its kind ("insert", "reload", "push", "local", "darwin",
/// "darwinReceived", "store", "write", "removeFile", "log", "open", …) beside the fields of that kind.
class Journal {
  public:
    using Ticket = std::uint64_t;

    static Journal& shared();

    /// Begins keeping events. Until then, and after stop(), events are dropped.
    void start();
    void stop();
    void record(std::string event, Dictionary fields = {});
    /// Takes the event's place in the order now; its outcome ("ok") follows with finish().
    Ticket begin(std::string event, Dictionary fields = {});
    void finish(Ticket ticket, bool ok);
    /// The events since the last call, oldest first; one that has not finished has no "ok" yet.
    std::vector<Dictionary> take();
    /// How many events were recorded since the program began; grows with each, whoever takes them.
    std::uint64_t count() const;

  private:
    mutable std::mutex mutex_;
    std::vector<Dictionary> events_;
    Ticket first_ = 0;
    bool keeping_ = false;
};

}  // namespace platform
