// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "settings/application/Application.h"
#include "settings/channels/Session.h"
#include "settings/channels/server/ServerHandler.h"

namespace settings {

/// The connections to a served application: a session for each, and the commands that it has sent and that
/// were not done yet. Each connection's commands are done in order, and the connections take turns; one that
/// waits for an event holds up nobody else. Main thread, and never from within a task of the run loop.
class Clients {
  public:
    using Send = std::function<void(server::ConnectionId, std::string)>;
    using Taken = std::function<void(server::ConnectionId, std::size_t)>;

    /// No "wait" of a connection lasts longer.
    static constexpr std::chrono::seconds longestWait{60};

    /// `send` carries an answer or a push to its connection, which may be gone; `taken` is told the length of
    /// each command that was received, once it is begun or nobody asks for it any more. The application must
    /// outlive this.
    Clients(Application& application, Send send, Taken taken);
    Clients(const Clients&) = delete;
    Clients& operator=(const Clients&) = delete;

    void opened(server::ConnectionId connection);
    void received(server::ConnectionId connection, std::string command);
    /// What the connection has sent before is still done, but for what stands behind a "wait" that is not
    /// over: that ends with its connection.
    void closed(server::ConnectionId connection);

    /// Does one command of the connection whose turn it is; false when there is none to do now.
    bool answerNext();
    bool hasCommands() const;
    /// How many connections there are.
    std::size_t count() const { return clients_.size(); }
    /// Tells every connection what has become otherwise by itself, and ends each "wait" whose event has come
    /// or whose time is over. Nothing may be in flight, and the journal's events must have been collected.
    void showChanges();
    /// When the first "wait" ends in vain; nothing while none is waited.
    std::optional<std::chrono::steady_clock::time_point> nextDeadline() const;

  private:
    struct Client {
        explicit Client(Application& application) : session(application, longestWait) {}

        /// Whether there is a command that can be begun now.
        bool isReady() const { return !commands.empty() && !session.isWaiting(); }

        Session session;
        std::deque<std::string> commands;
        bool hasLeft = false;
    };
    using Entries = std::map<server::ConnectionId, Client>;

    Entries::iterator nextReady();
    void endWaits();
    void forget(Entries::iterator entry);

    Application& application_;
    Send send_;
    Taken taken_;
    Entries clients_;
    server::ConnectionId lastAnswered_ = 0;
};

}  // namespace settings
