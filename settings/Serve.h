// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Error.h"
#include "platform/foundation/FileSystem.h"
#include "platform/foundation/ToneSource.h"
#include "settings/Application.h"
#include "settings/Session.h"
#include "settings/server/Server.h"

namespace settings {

/// The channel of the browser page: a session for each connection of the loopback server, all on the same
/// application. The server's thread only puts messages into an inbox; the main thread answers them one after
/// the other, and tells every session when something has changed by itself.
class Serve : private ServerHandler {
  public:
    /// `application` and `files` must outlive this. Main thread.
    Serve(Application& application, std::shared_ptr<platform::FileSystem> files);
    ~Serve() override;
    Serve(const Serve&) = delete;
    Serve& operator=(const Serve&) = delete;

    /// Starts listening, prints the address as one line on standard output, and runs until SIGINT or SIGTERM.
    /// An error says why it could not begin.
    platform::Result<void> run(std::uint16_t port, const std::string& pageDirectory);

  private:
    struct Message {
        enum class Kind { Opened, Received, Closed, SoundAsked };
        Kind kind = Kind::Received;
        /// The connection, or the request for a sound.
        std::uint64_t id = 0;
        std::string text;
    };

    void opened(ConnectionId connection) override;
    void received(ConnectionId connection, std::string text) override;
    void closed(ConnectionId connection) override;
    void soundAsked(SoundRequestId request, std::string identifier) override;
    void put(Message message);
    std::optional<Message> take();

    platform::Result<void> watchSignals();
    platform::Result<void> watchInbox();
    void handleInbox();
    void handle(const Message& message);
    void pushChanges();
    /// Whether the process was asked to end; once it was, it always is.
    bool isEnding();
    static platform::Result<platform::ToneSound> sound(const std::string& identifier);
    std::optional<std::string> imageFile(std::string_view name) const;

    Application& application_;
    std::shared_ptr<platform::FileSystem> files_;
    std::map<ConnectionId, Session> sessions_;
    std::mutex mutex_;
    std::deque<Message> inbox_;
    int wakeUp_ = -1;
    int signals_ = -1;
    bool ending_ = false;
    /// Declared last: its thread ends before what it uses goes.
    std::unique_ptr<Server> server_;
};

}  // namespace settings
