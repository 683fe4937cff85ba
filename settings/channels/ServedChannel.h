// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/foundation/Error.h"
#include "settings/channels/server/Server.h"

namespace settings {

/// What every channel to a page has, whatever is answered on it: the loopback server, whose thread only puts
/// messages into an inbox for the main thread, the printed address, and the signals that end the process.
/// Main thread.
class ServedChannel : private server::ServerHandler {
  public:
    ServedChannel(const ServedChannel&) = delete;
    ServedChannel& operator=(const ServedChannel&) = delete;

  protected:
    struct Message {
        enum class Kind { Opened, Received, Closed, SoundAsked };
        Kind kind = Kind::Received;
        /// The connection, or the request for a sound.
        std::uint64_t id = 0;
        std::string text;
    };

    ServedChannel() = default;
    /// Ends the server first: its thread may not meet a part of this that is gone. A derived class whose
    /// members it uses calls endServer() in its own destructor.
    ~ServedChannel() override;

    /// Watches signals and inbox with the main run loop, before the server's thread starts, which takes over
    /// which signals are held back.
    platform::Result<void> watch();
    /// Starts listening, prints the address as one line on standard output, and runs the main loop until
    /// a signal asks it to end. `query` ("?NAME=VALUE", or empty) is what the printed address has before the
    /// secret. An error says why it could not begin.
    platform::Result<void> serve(server::ServerOptions options, std::string_view query = {});
    /// The parts of serve(). What is asked for as soon as the server listens is answered when the loop runs.
    platform::Result<void> listen(server::ServerOptions options);
    platform::Result<void> tellAddress(std::string_view query = {});
    void runUntilEnded();
    void endServer() { server_.reset(); }
    /// From within the loop, when something has come or comeBack() was called.
    virtual void handleInbox() = 0;
    std::deque<Message> takeAll();
    /// Has the inbox looked at again, once the loop has been around. Any thread.
    void comeBack();
    /// Whether the process was asked to end; once it was, it always is.
    bool isEnding();
    /// There from listen() on.
    server::Server& server() { return *server_; }

  private:
    void opened(server::ConnectionId connection) override;
    void received(server::ConnectionId connection, std::string text) override;
    void closed(server::ConnectionId connection) override;
    void soundAsked(server::SoundRequestId request, std::string identifier) override;
    void put(Message message);

    std::mutex mutex_;
    std::deque<Message> inbox_;
    int wakeUp_ = -1;
    int signals_ = -1;
    bool ending_ = false;
    std::unique_ptr<server::Server> server_;
};

}  // namespace settings
