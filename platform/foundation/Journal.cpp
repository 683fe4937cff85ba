// SPDX-License-Identifier: MIT
#include "platform/foundation/Journal.h"

#include <limits>

namespace platform {

namespace {

/// The ticket of an event that was not kept.
constexpr Journal::Ticket droppedTicket = std::numeric_limits<Journal::Ticket>::max();

}  // namespace

Journal& Journal::shared() {
    // Never destroyed: destructors of other static objects may still record.
    static Journal& journal = *new Journal;
    return journal;
}

void Journal::start() {
    const std::lock_guard lock(mutex_);
    keeping_ = true;
}

void Journal::stop() {
    const std::lock_guard lock(mutex_);
    keeping_ = false;
    first_ += events_.size();
    events_.clear();
}

void Journal::record(std::string event, Dictionary fields) {
    begin(std::move(event), std::move(fields));
}

Journal::Ticket Journal::begin(std::string event, Dictionary fields) {
    const std::lock_guard lock(mutex_);
    if (!keeping_) return droppedTicket;
    fields.insert_or_assign("event", Value(std::move(event)));
    events_.push_back(std::move(fields));
    return first_ + events_.size() - 1;
}

void Journal::finish(Ticket ticket, bool ok) {
    const std::lock_guard lock(mutex_);
    if (ticket < first_ || ticket - first_ >= events_.size()) return;
    events_[ticket - first_].insert_or_assign("ok", Value(ok));
}

std::vector<Dictionary> Journal::take() {
    const std::lock_guard lock(mutex_);
    first_ += events_.size();
    return std::exchange(events_, {});
}

std::uint64_t Journal::count() const {
    const std::lock_guard lock(mutex_);
    return first_ + events_.size();
}

}  // namespace platform
