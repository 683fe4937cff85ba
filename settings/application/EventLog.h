// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Journal.h"
#include "platform/foundation/Value.h"

namespace settings {

/// What happened, for every session to read at its own pace: the journal's events in the order in which they
/// began, each with its "id", "at", "cause" and, where it took time, "ms". Main thread.
class EventLog {
  public:
    /// How many events stay when a session does not ask for them.
    static constexpr std::size_t backlog = 10'000;

    /// A place in the log, by the events before it.
    struct Place {
        std::uint64_t events = 0;
        /// Of these, how many are told to everybody.
        std::uint64_t withoutCalls = 0;
    };
    /// Who is told.
    struct Reader {
        /// What a cause of the form causeOfCommand() is told without.
        std::uint64_t connection = 0;
        /// Whether calls of screens' methods are told too. To others it is as if these were not there.
        bool calls = false;
    };

    /// Takes over what the journal has recorded.
    void collect();
    /// Forgets all but the newest `backlog` events. Called before a command, so that all that one command
    /// does is answered whole.
    void trim();
    /// Forgets all that stands before the place: for who knows that every session was told of it.
    void forgetBefore(Place place);

    /// The place of the next event.
    Place end() const { return end_; }
    /// The events from a place on.
    struct Slice {
        platform::Array events;
        /// How many more there were that have been forgotten.
        std::uint64_t dropped = 0;
    };
    Slice since(Place place, const Reader& reader) const;
    /// Whether an event of that kind (and of that "name", if one is given) is among those from the place on.
    bool holdsSince(Place place, std::string_view kind, const std::optional<std::string>& name) const;

  private:
    void forgetFirst();
    std::deque<platform::JournalEntry>::const_iterator from(Place place) const;

    std::deque<platform::JournalEntry> entries_;
    Place first_;
    Place end_;
};

/// What a connection's command says of itself to the journal: its number on that connection, and the "id"
/// that it had, or nil.
platform::Value causeOfCommand(std::uint64_t connection, std::uint64_t number, const platform::Value& id);

}  // namespace settings
