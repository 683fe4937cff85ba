// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <list>

namespace settings::server {

/// Whether a connection is being answered, or only might ask for something.
enum class Activity { Idle, Busy };

/// Who may stay of those that have connected to a server. A connection that has not shown the secret is a
/// stranger: strangers have places of their own, so that however many come they take none away from those
/// that have shown it. A newcomer always gets in; when all places for strangers are taken, the one that has
/// been idle longest leaves. One thread's; nothing here waits.
class Places {
    struct Holder;
    using Holders = std::list<Holder>;

  public:
    /// Ends the connection; called at most once, from within enter(), becomeKnown() or makeRoom(), and must
    /// not give back the place before it returns.
    using Leave = std::function<void()>;

    /// A connection's hold on its place, given back with it. Must not outlive the places.
    class Place {
      public:
        Place(Place&& other) noexcept;
        Place& operator=(Place&&) = delete;
        ~Place();

        /// A connection is idle when it comes. Idle again, it has the longest time before it leaves.
        void set(Activity activity);
        /// Takes one of the places for those that have shown the secret, if need be that of the one that has
        /// been idle longest. False when all of them are busy, or when this one has to leave already; its
        /// place is the same then.
        bool becomeKnown();
        bool isKnown() const;
        /// What ends the connection from now on.
        void setLeave(Leave leave);

      private:
        friend Places;
        Place(Places& places, Holders::iterator holder) : places_(&places), holder_(holder) {}

        Places* places_;
        Holders::iterator holder_;
    };

    /// How many strangers may stay, and how many who have shown the secret; one each at least.
    Places(std::size_t strangers, std::size_t known) : strangersLimit_(strangers), knownLimit_(known) {}
    Places(const Places&) = delete;
    Places& operator=(const Places&) = delete;

    /// A stranger's place.
    Place enter(Leave leave);
    /// Ends one connection that can be missed: an idle stranger, else any stranger, else one that has shown
    /// the secret and is idle, each time the oldest. False when there is none.
    bool makeRoom();

  private:
    struct Holder {
        Holders* home;
        Activity activity;
        Leave leave;
    };

    enum class Choice { IdleOnly, IdleFirst };
    bool endOneOf(Holders& holders, Choice choice);

    std::size_t strangersLimit_;
    std::size_t knownLimit_;
    /// Each in the order in which they came or were idle last.
    Holders strangers_;
    Holders known_;
    /// Those that were told to leave and have not given back their place yet.
    Holders leaving_;
};

}  // namespace settings::server
