// SPDX-License-Identifier: MIT
#include "platform/foundation/Journal.h"

#include <chrono>

namespace platform {

namespace {

using std::chrono::steady_clock;

const steady_clock::time_point loaded = steady_clock::now();

thread_local Journal::Frame* innermost = nullptr;

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
    first_ += entries_.size();
    entries_.clear();
}

Journal::Id Journal::record(std::string event, Dictionary fields) {
    return add(std::move(event), std::move(fields), presentCause(), false);
}

std::vector<JournalEntry> Journal::take() {
    const std::lock_guard lock(mutex_);
    first_ += entries_.size();
    return std::exchange(entries_, {});
}

std::uint64_t Journal::count() const {
    const std::lock_guard lock(mutex_);
    return first_ - 1 + entries_.size();
}

JournalCause Journal::presentCause() {
    return innermost ? innermost->cause() : JournalCause();
}

void Journal::setClock(std::function<double()> milliseconds) {
    const std::lock_guard lock(mutex_);
    clock_.swap(milliseconds);
}

Journal::Id Journal::add(std::string event, Dictionary fields, JournalCause cause, bool isCall) {
    const std::lock_guard lock(mutex_);
    if (!keeping_) return 0;
    fields.insert_or_assign("event", Value(std::move(event)));
    const Id id = first_ + entries_.size();
    entries_.push_back({std::move(fields), id, now(), std::move(cause), std::nullopt, isCall});
    return id;
}

void Journal::finish(Id id, std::optional<bool> ok) {
    const std::lock_guard lock(mutex_);
    if (id < first_ || id - first_ >= entries_.size()) return;
    JournalEntry& entry = entries_[id - first_];
    entry.milliseconds = now() - entry.at;
    if (ok) entry.event.insert_or_assign("ok", Value(*ok));
}

double Journal::now() const {
    if (clock_) return clock_();
    return std::chrono::duration<double, std::milli>(steady_clock::now() - loaded).count();
}

Journal::Frame::Frame() : outer_(innermost) {
    innermost = this;
}

Journal::Frame::~Frame() {
    innermost = outer_;
}

JournalCause Journal::Frame::outerCause() const {
    return outer_ ? outer_->cause() : JournalCause();
}

Journal::Course::Course(std::string event, Dictionary fields) {
    JournalCause outer = outerCause();
    id_ = shared().add(std::move(event), std::move(fields), outer, false);
    cause_ = id_ == 0 ? std::move(outer) : JournalCause{Value(id_), Value(id_)};
}

Journal::Course::~Course() {
    if (id_ != 0) shared().finish(id_, ok_);
}

Journal::Call::~Call() {
    if (id_.value_or(0) != 0) shared().finish(*id_, std::nullopt);
}

JournalCause Journal::Call::cause() {
    if (!isNoted()) return outerCause();
    if (!id_) {
        cause_ = outerCause();
        id_ = shared().add("call", fields(), cause_, true);
        if (*id_ != 0) cause_.nearest = Value(*id_);
    }
    return cause_;
}

}  // namespace platform
