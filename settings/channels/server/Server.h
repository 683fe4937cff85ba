// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/foundation/Error.h"
#include "platform/foundation/ToneSource.h"
#include "settings/channels/server/ServerHandler.h"
#include "settings/channels/server/ServerOptions.h"

namespace settings::server {

/// Serves the browser page and carries the screen protocol over a WebSocket at "/ws".
///
/// It listens on 127.0.0.1 only. The page itself is anybody's; what shows the phone or acts on it is for
/// those who know the secret. The address from url() has it in its fragment, which a browser keeps to itself;
/// the page brings it with each request ("Authorization: Bearer SECRET") and as the first message of its
/// socket (`{"secret": TEXT}`), which is closed with the code 4401 when that is not so. What it checks of a
/// request is decided in Responder, who may stay in Places; this class moves bytes on a thread of its own.
class Server {
  public:
    /// Listens and starts the thread; the server answers from here on. `handler` must outlive the server.
    /// Raises the process's limit of descriptors to what all connections may need, as far as that is allowed.
    /// Fails with a sentence that names the port when it is taken or may not be used.
    static platform::Result<std::unique_ptr<Server>> start(ServerOptions options, ServerHandler& handler);

    /// Says good-bye to all clients (close code 1001, or 1012 after sendAllBack()), waits for them at most
    /// ServerLimits::closeTimeout, ends every connection and the thread. Not from within a ServerHandler
    /// call.
    ~Server();

    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// The address to open in a browser, secret included: "http://127.0.0.1:PORT/#secret=HEX". Any thread.
    std::string url() const;

    /// The port listened on, also when any free one was asked for. Any thread.
    std::uint16_t port() const;

    /// Lets in nobody more: whoever comes to the same socket is left for the process that has it too. Returns
    /// when that is so.
    void refuseNewcomers();
    /// Tells all clients to come back at once (close code 1012), after what was sent to them.
    void sendAllBack();

    /// Sends one text message (valid UTF-8), after those sent before. Any thread; never waits for the client.
    /// A connection that is gone or being closed: nothing happens.
    void send(ConnectionId connection, std::string text);

    /// Sends what is still queued, then closes with code 1000; ServerHandler::closed() follows. Any thread;
    /// an unknown connection: nothing happens.
    void close(ConnectionId connection);

    /// A message of so many bytes, which ServerHandler::received() gave, has been dealt with: to be called
    /// once for each, also after the connection's end, whose place is free only then. A connection with too
    /// many bytes that were not taken is not read from. Any thread.
    void taken(ConnectionId connection, std::size_t bytes);

    /// Answers ServerHandler::soundAsked(); the error's text is what the page is told. Any thread. A request
    /// that is unknown, or that was answered or given up already: nothing happens.
    void giveSound(SoundRequestId request, platform::Result<platform::ToneSound> sound);

  private:
    class Core;
    explicit Server(std::unique_ptr<Core> core);

    std::unique_ptr<Core> core_;
};

}  // namespace settings::server
