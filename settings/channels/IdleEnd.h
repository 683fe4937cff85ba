// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>

namespace settings {

/// When a server that nobody has a page open on has been so for long enough to end. Knows no clock of its
/// own.
class IdleEnd {
  public:
    using Time = std::chrono::steady_clock::time_point;
    using Duration = std::chrono::steady_clock::duration;

    /// Nothing for a server that stays.
    explicit IdleEnd(std::optional<Duration> patience = std::nullopt) : patience_(patience) {}

    /// To be told how many pages are connected, at the start and whenever that may have changed.
    void see(std::size_t pages, Time now) {
        if (pages > 0) {
            idleSince_.reset();
        } else if (!idleSince_) {
            idleSince_ = now;
        }
    }

    /// A page is about to come: the whole time is waited for it.
    void beginAnew(Time now) {
        if (idleSince_) idleSince_ = now;
    }

    /// When the end will be due if nobody comes; nothing while a page is open, and for a server that stays.
    std::optional<Time> deadline() const {
        if (!patience_ || !idleSince_) return std::nullopt;
        return *idleSince_ + *patience_;
    }
    bool isDue(Time now) const { return deadline() && *deadline() <= now; }

  private:
    std::optional<Duration> patience_;
    std::optional<Time> idleSince_;
};

}  // namespace settings
