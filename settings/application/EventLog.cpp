// SPDX-License-Identifier: MIT
#include "settings/application/EventLog.h"

#include <algorithm>
#include <utility>

#include "platform/foundation/Journal.h"

namespace settings {

using platform::Value;

void EventLog::collect() {
    for (platform::Dictionary& event : platform::Journal::shared().take())
        events_.emplace_back(std::move(event));
}

void EventLog::trim() {
    if (events_.size() <= backlog) return;
    const std::size_t forgotten = events_.size() - backlog;
    events_.erase(events_.begin(), events_.begin() + static_cast<std::ptrdiff_t>(forgotten));
    first_ += forgotten;
}

EventLog::Slice EventLog::since(std::uint64_t number) const {
    const std::uint64_t from = std::clamp(number, first_, end());
    Slice slice;
    slice.dropped = from - std::min(number, from);
    slice.events.assign(events_.begin() + static_cast<std::ptrdiff_t>(from - first_), events_.end());
    return slice;
}

bool EventLog::holdsSince(std::uint64_t number, std::string_view kind,
                          const std::optional<std::string>& name) const {
    const std::uint64_t from = std::clamp(number, first_, end());
    return std::any_of(events_.begin() + static_cast<std::ptrdiff_t>(from - first_), events_.end(),
                       [&](const Value& event) {
                           return event["event"] == Value(kind) && (!name || event["name"] == Value(*name));
                       });
}

}  // namespace settings
