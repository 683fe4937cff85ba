// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Error.h"
#include "platform/foundation/FileSystem.h"
#include "platform/foundation/ToneSource.h"
#include "settings/application/Application.h"
#include "settings/channels/Clients.h"
#include "settings/channels/IdleEnd.h"
#include "settings/channels/ServedChannel.h"
#include "settings/channels/server/RunningServer.h"
#include "settings/channels/server/SecretFile.h"

namespace settings {

/// What a served application is reached by. Host paths.
struct ServeOptions {
    /// 0 for any free one.
    std::uint16_t port = 0;
    std::string pageDirectory;
    /// The root that the application works on.
    std::string rootDirectory;
    /// Where the server is announced while it runs, and its secret outlives the program; "": nowhere.
    std::string runtimeDirectory;
    /// Whether pages that a program before on that root and port has left open may go on.
    server::OldSecret oldSecret = server::OldSecret::TakeOver;
    /// A socket that listens already, in the place of the port; owned by the server. -1 for none.
    int listener = -1;
    /// What lets pages in; "" for one of the server's own.
    std::string secret = {};
    /// How long nobody may have a page open before the run ends by itself; nothing for no end.
    std::optional<std::chrono::steady_clock::duration> patience = {};
};

/// The channel of the browser page: a session for each connection of the loopback server, all on the same
/// application. The server's thread only puts messages into an inbox, which the server keeps small by reading
/// no further; the main thread answers them, the connections in turn, and tells every session when something
/// has changed by itself.
class Serve : private ServedChannel {
  public:
    /// `application` and `files` must outlive this. Main thread.
    Serve(Application& application, std::shared_ptr<platform::FileSystem> files);
    ~Serve() override;

    /// Starts listening, prints the address as one line on standard output, and runs until a signal asks it
    /// to end, or until it has been idle for too long. An error says why it could not begin.
    platform::Result<void> run(const ServeOptions& options);
    /// The two halves of run(): the address is not printed, and what is asked for by then is answered in the
    /// second.
    platform::Result<void> start(const ServeOptions& options);
    using ServedChannel::runUntilEnded;

    /// Takes no more connections and no more commands, for a program that will go on in this one's place.
    /// What has been done by then is done; what has not will not be.
    void hold();
    /// After hold(): tells every page to come back at once, and ends the run.
    void leave();

  private:
    /// Watches what the main run loop is to see, and says how the server is to be.
    platform::Result<server::ServerOptions> prepare(const ServeOptions& options);
    platform::Result<void> watchDeadlines();
    void handleInbox() override;
    void sortInbox();
    void pushChanges();
    void setDeadline();
    /// Ends the run when nobody has a page open for too long.
    void endWhenIdle();
    void announce(const ServeOptions& options);
    static platform::Result<platform::ToneSound> sound(const std::string& identifier);
    std::optional<std::string> imageFile(std::string_view name) const;

    Application& application_;
    std::shared_ptr<platform::FileSystem> files_;
    Clients clients_;
    /// A timer of real time, unlike the loop's own.
    int deadlines_ = -1;
    bool isHeld_ = false;
    IdleEnd idleEnd_;
    std::optional<server::RunningServer> announced_;
};

}  // namespace settings
