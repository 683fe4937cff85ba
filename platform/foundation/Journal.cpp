// SPDX-License-Identifier: MIT
#include "platform/foundation/Journal.h"

#include <chrono>

namespace platform {

namespace {

using std::chrono::steady_clock;

const steady_clock::time_point loaded = steady_clock::now();

thread_local Journal::Frame* innermost = nullptr;

/// An emptied journal keeps the memory for so many events, so that the next ones need not ask for it.
constexpr std::size_t mostKeptPlaces = 4096;

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
    first_ += parts_.size();
    parts_.clear();
}

Journal::Id Journal::record(std::string event, Dictionary fields) {
    return add({.event = std::move(event), .fields = std::move(fields), .cause = presentCause()});
}

Journal::Id Journal::record(std::string event, Named named) {
    return add({.event = std::move(event), .name = std::move(named.name), .cause = presentCause()});
}

std::vector<JournalEntry> Journal::take() {
    std::vector<Part> parts;
    Id id = 0;
    {
        const std::lock_guard lock(mutex_);
        id = first_;
        first_ += parts_.size();
        parts.swap(parts_);
    }
    std::vector<JournalEntry> entries;
    entries.reserve(parts.size());
    for (Part& part : parts) entries.push_back(entryOf(std::move(part), id++));
    parts.clear();
    if (parts.capacity() <= mostKeptPlaces) {
        const std::lock_guard lock(mutex_);
        if (parts_.empty()) parts_.swap(parts);
    }
    return entries;
}

JournalEntry Journal::entryOf(Part&& part, Id id) {
    Dictionary event = std::move(part.fields);
    event.insert_or_assign("event", Value(std::move(part.event)));
    if (!part.name.isNil()) event.insert_or_assign("name", std::move(part.name));
    if (part.ok) event.insert_or_assign("ok", Value(*part.ok));
    return {std::move(event), id, part.at, std::move(part.cause), part.milliseconds, part.isCall};
}

std::uint64_t Journal::count() const {
    const std::lock_guard lock(mutex_);
    return first_ - 1 + parts_.size();
}

JournalCause Journal::presentCause() {
    return innermost ? innermost->cause() : JournalCause();
}

void Journal::setClock(std::function<double()> milliseconds) {
    const std::lock_guard lock(mutex_);
    clock_.swap(milliseconds);
}

Journal::Id Journal::add(Part part) {
    const std::lock_guard lock(mutex_);
    if (!keeping_) return 0;
    part.at = now();
    parts_.push_back(std::move(part));
    return first_ + parts_.size() - 1;
}

void Journal::finish(Id id, std::optional<bool> ok) {
    const std::lock_guard lock(mutex_);
    if (id < first_ || id - first_ >= parts_.size()) return;
    Part& part = parts_[id - first_];
    part.milliseconds = now() - part.at;
    part.ok = ok;
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
    begin({.event = std::move(event), .fields = std::move(fields)});
}

Journal::Course::Course(std::string event, Named named) {
    begin({.event = std::move(event), .name = std::move(named.name)});
}

void Journal::Course::begin(Part part) {
    cause_ = outerCause();
    part.cause = cause_;
    id_ = shared().add(std::move(part));
    if (id_ != 0) cause_ = {Value(id_), Value(id_)};
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
        id_ = shared().add({.event = "call", .fields = fields(), .isCall = true, .cause = cause_});
        if (*id_ != 0) cause_.nearest = Value(*id_);
    }
    return cause_;
}

}  // namespace platform
