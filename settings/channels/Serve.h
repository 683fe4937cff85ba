// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Error.h"
#include "platform/foundation/FileSystem.h"
#include "platform/foundation/ToneSource.h"
#include "settings/application/Application.h"
#include "settings/channels/Clients.h"
#include "settings/channels/server/SecretFile.h"
#include "settings/channels/server/Server.h"

namespace settings {

/// What a served application is reached by. Host paths.
struct ServeOptions {
    /// 0 for any free one.
    std::uint16_t port = 0;
    std::string pageDirectory;
    /// The root that the application works on.
    std::string rootDirectory;
    /// Where the secret outlives the program; "": nowhere.
    std::string runtimeDirectory;
    /// Whether pages that a program before on that root and port has left open may go on.
    server::OldSecret oldSecret = server::OldSecret::TakeOver;
};

/// The channel of the browser page: a session for each connection of the loopback server, all on the same
/// application. The server's thread only puts messages into an inbox, which the server keeps small by reading
/// no further; the main thread answers them, the connections in turn, and tells every session when something
/// has changed by itself.
class Serve : private server::ServerHandler {
  public:
    /// `application` and `files` must outlive this. Main thread.
    Serve(Application& application, std::shared_ptr<platform::FileSystem> files);
    ~Serve() override;
    Serve(const Serve&) = delete;
    Serve& operator=(const Serve&) = delete;

    /// Starts listening, prints the address as one line on standard output, and runs until SIGINT or SIGTERM.
    /// An error says why it could not begin.
    platform::Result<void> run(const ServeOptions& options);

  private:
    struct Message {
        enum class Kind { Opened, Received, Closed, SoundAsked };
        Kind kind = Kind::Received;
        /// The connection, or the request for a sound.
        std::uint64_t id = 0;
        std::string text;
    };

    void opened(server::ConnectionId connection) override;
    void received(server::ConnectionId connection, std::string text) override;
    void closed(server::ConnectionId connection) override;
    void soundAsked(server::SoundRequestId request, std::string identifier) override;
    void put(Message message);
    std::deque<Message> takeAll();
    /// Has the inbox looked at again, once the loop has been around.
    void comeBack();

    platform::Result<void> watchSignals();
    platform::Result<void> watchInbox();
    platform::Result<void> watchDeadlines();
    void handleInbox();
    void sortInbox();
    void pushChanges();
    void setDeadline();
    /// Whether the process was asked to end; once it was, it always is.
    bool isEnding();
    static platform::Result<platform::ToneSound> sound(const std::string& identifier);
    std::optional<std::string> imageFile(std::string_view name) const;

    Application& application_;
    std::shared_ptr<platform::FileSystem> files_;
    Clients clients_;
    std::mutex mutex_;
    std::deque<Message> inbox_;
    int wakeUp_ = -1;
    int signals_ = -1;
    /// A timer of real time, unlike the loop's own.
    int deadlines_ = -1;
    bool ending_ = false;
    /// Declared last: its thread ends before what it uses goes.
    std::unique_ptr<server::Server> server_;
};

}  // namespace settings
