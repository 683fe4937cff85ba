// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Value.h"

namespace settings {

/// What happened, for every session to read at its own pace: the journal's events, numbered from 0 in the
/// order in which they began. Main thread.
class EventLog {
  public:
    /// How many events stay when a session does not ask for them.
    static constexpr std::size_t backlog = 10'000;

    /// Takes over what the journal has recorded.
    void collect();
    /// Forgets all but the newest `backlog` events. Called before a command, so that all that one command
    /// does is answered whole.
    void trim();

    /// The number that the next event will get.
    std::uint64_t end() const { return first_ + events_.size(); }
    struct Slice {
        platform::Array events;
        /// How many more there were that have been forgotten.
        std::uint64_t dropped = 0;
    };
    Slice since(std::uint64_t number) const;
    /// Whether an event of that kind (and of that "name", if one is given) is among those from `number` on.
    bool holdsSince(std::uint64_t number, std::string_view kind,
                    const std::optional<std::string>& name) const;

  private:
    std::deque<platform::Value> events_;
    std::uint64_t first_ = 0;
};

}  // namespace settings
