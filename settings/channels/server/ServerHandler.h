// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace settings::server {

/// Names one request for a sound. Starts at 1 and is never used twice by the same server.
using SoundRequestId = std::uint64_t;

/// Names one WebSocket connection of a Server. Starts at 1 and is never used twice by the same server.
using ConnectionId = std::uint64_t;

/// Told what happens on a Server's WebSocket connections, and asked for sounds. Every call comes on the
/// server's own thread, one at a time; an implementation hands work over to its own thread and returns at
/// once, because all connections wait meanwhile. An exception that leaves a call ends the connection
/// concerned and nothing else.
class ServerHandler {
  public:
    virtual ~ServerHandler() = default;

    /// A page has connected and has shown the secret. May come before Server::start() has returned to its
    /// caller.
    virtual void opened(ConnectionId connection) = 0;

    /// One text message of at most ServerLimits::messageBytes bytes, valid UTF-8, otherwise unchecked.
    /// Whoever has dealt with it says so with Server::taken(). Not called any more for a connection once
    /// Server::close() has taken effect on it.
    virtual void received(ConnectionId connection, std::string text) = 0;

    /// The connection is gone, whoever ended it. Called exactly once for each opened(), at the latest before
    /// the server's destructor returns; the last call for this connection.
    virtual void closed(ConnectionId connection) = 0;

    /// A browser that was let in wants to hear the sound of that identifier, which is unchecked. To be
    /// answered with Server::giveSound(); a request without an answer within ServerLimits::soundTimeout is
    /// told to come again.
    virtual void soundAsked(SoundRequestId request, std::string identifier) = 0;
};

}  // namespace settings::server
