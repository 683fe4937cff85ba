// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/foundation/Error.h"
#include "platform/foundation/ToneSource.h"
#include "settings/server/ServerHandler.h"
#include "settings/server/ServerOptions.h"

namespace settings {

/// Serves the browser page and carries the screen protocol over a WebSocket at "/ws".
///
/// It listens on 127.0.0.1 only and lets in whoever knows the secret made up at each start: the address from
/// url() answers with a cookie, and everything else needs that cookie. What it checks of a request is decided
/// in Responder; this class moves bytes on a thread of its own.
class Server {
  public:
    /// Listens and starts the thread; the server answers from here on. `handler` must outlive the server.
    /// Fails with a sentence that names the port when it is taken or may not be used.
    static platform::Result<std::unique_ptr<Server>> start(ServerOptions options, ServerHandler& handler);

    /// Says good-bye to all clients (close code 1001), waits for them at most ServerLimits::closeTimeout,
    /// ends every connection and the thread. Not from within a ServerHandler call.
    ~Server();

    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// The address to open in a browser, secret included: "http://127.0.0.1:PORT/?secret=HEX". Any thread.
    std::string url() const;

    /// The port listened on, also when any free one was asked for. Any thread.
    std::uint16_t port() const;

    /// Sends one text message (valid UTF-8), after those sent before. Any thread; never waits for the client.
    /// A connection that is gone or being closed: nothing happens.
    void send(ConnectionId connection, std::string text);

    /// Sends what is still queued, then closes with code 1000; ServerHandler::closed() follows. Any thread;
    /// an unknown connection: nothing happens.
    void close(ConnectionId connection);

    /// Answers ServerHandler::soundAsked(); the error's text is what the page is told. Any thread. A request
    /// that is unknown, or that was answered or given up already: nothing happens.
    void giveSound(SoundRequestId request, platform::Result<platform::ToneSound> sound);

  private:
    class Core;
    explicit Server(std::unique_ptr<Core> core);

    std::unique_ptr<Core> core_;
};

}  // namespace settings
