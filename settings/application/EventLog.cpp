// SPDX-License-Identifier: MIT
#include "settings/application/EventLog.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "settings/application/RowKeyText.h"

namespace settings {

using platform::Dictionary;
using platform::JournalEntry;
using platform::Value;

namespace {

/// To the microsecond: what is beyond that tells nothing.
double rounded(double milliseconds) {
    return std::round(milliseconds * 1000) / 1000;
}

Value causeFor(const EventLog::Reader& reader, const platform::JournalCause& cause) {
    const Value& told = reader.calls ? cause.nearest : cause.pastCalls;
    if (!told.dictionary() || told["connection"] != Value(reader.connection)) return told;
    Dictionary own = *told.dictionary();
    own.erase(own.find("connection"));
    return own;
}

Value eventFor(const EventLog::Reader& reader, const JournalEntry& entry) {
    Dictionary event = entry.event;
    event["id"] = entry.id;
    event["at"] = rounded(entry.at);
    event["cause"] = causeFor(reader, entry.cause);
    if (entry.milliseconds) event["ms"] = rounded(*entry.milliseconds);
    if (const auto row = entry.isCall ? event["row"].unsignedInteger() : std::nullopt)
        event["row"] = rowKeyText(*row);
    return event;
}

}  // namespace

void EventLog::collect() {
    for (JournalEntry& entry : platform::Journal::shared().take()) {
        ++end_.events;
        if (!entry.isCall) ++end_.withoutCalls;
        entries_.push_back(std::move(entry));
    }
}

void EventLog::trim() {
    while (entries_.size() > backlog) forgetFirst();
}

void EventLog::forgetBefore(Place place) {
    while (!entries_.empty() && first_.events < place.events) forgetFirst();
}

void EventLog::forgetFirst() {
    ++first_.events;
    if (!entries_.front().isCall) ++first_.withoutCalls;
    entries_.pop_front();
}

EventLog::Slice EventLog::since(Place place, const Reader& reader) const {
    Slice slice;
    if (place.events < first_.events) {
        slice.dropped =
            reader.calls ? first_.events - place.events : first_.withoutCalls - place.withoutCalls;
    }
    for (auto entry = from(place); entry != entries_.end(); ++entry) {
        if (reader.calls || !entry->isCall) slice.events.push_back(eventFor(reader, *entry));
    }
    return slice;
}

bool EventLog::holdsSince(Place place, std::string_view kind, const std::optional<std::string>& name) const {
    return std::any_of(from(place), entries_.end(), [&](const JournalEntry& entry) {
        const Value event(entry.event);
        return event["event"] == Value(kind) && (!name || event["name"] == Value(*name));
    });
}

std::deque<JournalEntry>::const_iterator EventLog::from(Place place) const {
    const std::uint64_t number = std::clamp(place.events, first_.events, end_.events);
    return entries_.begin() + static_cast<std::ptrdiff_t>(number - first_.events);
}

Value causeOfCommand(std::uint64_t connection, std::uint64_t number, const Value& id) {
    Dictionary cause{{"connection", connection}, {"command", number}};
    if (!id.isNil()) cause["id"] = id;
    return cause;
}

}  // namespace settings
