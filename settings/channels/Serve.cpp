// SPDX-License-Identifier: MIT
#include "settings/channels/Serve.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include "platform/foundation/Device.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/RunLoop.h"
#include "settings/channels/server/ActivatedListener.h"

namespace settings {

using platform::Result;
using platform::RunLoop;
using server::ConnectionId;

namespace {

/// For so long commands are answered at a stretch; then the loop goes around, and pages are told what has
/// changed.
constexpr std::chrono::milliseconds longestStretch{50};

std::unexpected<platform::Error> systemFailure(const char* what) {
    return platform::failure(std::string(what) + " could not be made: " + std::strerror(errno) + ".");
}

}  // namespace

Serve::Serve(Application& application, std::shared_ptr<platform::FileSystem> files)
    : application_(application),
      files_(std::move(files)),
      clients_(
          application,
          [this](ConnectionId connection, std::string text) { server().send(connection, std::move(text)); },
          [this](ConnectionId connection, std::size_t bytes) { server().taken(connection, bytes); }) {}

Serve::~Serve() {
    endServer();
    RunLoop::main().setBeforeSleeping([&application = application_] { application.keepUp(); });
    if (deadlines_ < 0) return;
    RunLoop::main().unwatch(deadlines_);
    close(deadlines_);
}

Result<void> Serve::run(const ServeOptions& options) {
    if (Result<void> started = start(options); !started) return started;
    if (Result<void> told = tellAddress(); !told) return told;
    runUntilEnded();
    return {};
}

Result<void> Serve::start(const ServeOptions& options) {
    auto serverOptions = prepare(options);
    if (!serverOptions) return std::unexpected(serverOptions.error());
    if (Result<void> listening = listen(*std::move(serverOptions)); !listening) return listening;
    idleEnd_ = IdleEnd(options.patience);
    announce(options);
    return {};
}

void Serve::announce(const ServeOptions& options) {
    if (!options.runtimeDirectory.empty()) {
        auto announced =
            server::RunningServer::announce(options.runtimeDirectory, options.rootDirectory, server().url());
        if (announced) {
            announced_.emplace(std::move(*announced));
        } else {
            platform::log("Other programs do not find this server: " +
                          announced.error().localizedDescription);
        }
    }
    server::tellReady();
}

void Serve::hold() {
    server().refuseNewcomers();
    isHeld_ = true;
}

void Serve::leave() {
    server().sendAllBack();
    RunLoop::main().stop();
}

Result<server::ServerOptions> Serve::prepare(const ServeOptions& options) {
    if (Result<void> watched = watch(); !watched) return std::unexpected(watched.error());
    if (Result<void> watched = watchDeadlines(); !watched) return std::unexpected(watched.error());
    RunLoop::main().setBeforeSleeping([this] { pushChanges(); });

    server::ServerOptions serverOptions;
    serverOptions.port = options.port;
    serverOptions.pageDirectory = options.pageDirectory;
    serverOptions.imageFile = [this](std::string_view name) { return imageFile(name); };
    serverOptions.listener = options.listener;
    // No page can be waiting at a port that is another one with each start.
    if (!options.secret.empty()) {
        serverOptions.secret = [&](std::uint16_t) { return Result<std::string>(options.secret); };
    } else if (options.port != 0 || options.listener >= 0) {
        serverOptions.secret = [&](std::uint16_t port) {
            return server::keptSecret({options.runtimeDirectory, options.rootDirectory, port},
                                      options.oldSecret);
        };
    }
    return serverOptions;
}

Result<void> Serve::watchDeadlines() {
    deadlines_ = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
    if (deadlines_ < 0) return systemFailure("The timer");
    // What is to be done then is done before the loop sleeps again.
    RunLoop::main().watch(deadlines_, [this] {
        std::uint64_t times = 0;
        [[maybe_unused]] const ssize_t count = read(deadlines_, &times, sizeof times);
        endWhenIdle();
    });
    return {};
}

void Serve::handleInbox() {
    const auto end = std::chrono::steady_clock::now() + longestStretch;
    do {
        if (isEnding()) return RunLoop::main().stop();
        sortInbox();
        if (isHeld_) return;
        if (!clients_.answerNext()) return;
    } while (std::chrono::steady_clock::now() < end);
    comeBack();
}

void Serve::sortInbox() {
    for (Message& message : takeAll()) {
        switch (message.kind) {
            case Message::Kind::Opened:
                clients_.opened(message.id);
                break;
            case Message::Kind::Received:
                clients_.received(message.id, std::move(message.text));
                break;
            case Message::Kind::Closed:
                clients_.closed(message.id);
                break;
            case Message::Kind::SoundAsked:
                server().giveSound(message.id, sound(message.text));
                break;
        }
    }
}

void Serve::pushChanges() {
    // Whoever is asked first sees nothing half done, and each event has its outcome.
    RunLoop::main().drain();
    application_.events().collect();
    clients_.showChanges();
    setDeadline();
    if (clients_.hasCommands() && !isHeld_) comeBack();
    // What has come since stays queued: to run it here would let the loop sleep without another push.
    application_.events().trim();
}

void Serve::endWhenIdle() {
    // Whoever has just come is there.
    sortInbox();
    const auto now = std::chrono::steady_clock::now();
    idleEnd_.see(clients_.count(), now);
    if (!idleEnd_.isDue(now)) return;
    if (!announced_ || announced_->retract()) return RunLoop::main().stop();
    idleEnd_.beginAnew(now);
}

void Serve::setDeadline() {
    itimerspec setting{};
    idleEnd_.see(clients_.count(), std::chrono::steady_clock::now());
    auto deadline = clients_.nextDeadline();
    if (const auto end = idleEnd_.deadline(); end && (!deadline || *end < *deadline)) deadline = end;
    if (deadline) {
        using std::chrono::nanoseconds;
        const auto time = std::chrono::duration_cast<nanoseconds>(deadline->time_since_epoch()).count();
        setting.it_value = {time / 1'000'000'000, time % 1'000'000'000};
    }
    // Cannot fail with a time that the clock itself gave.
    timerfd_settime(deadlines_, TFD_TIMER_ABSTIME, &setting, nullptr);
}

Result<platform::ToneSound> Serve::sound(const std::string& identifier) {
    const auto& tones = platform::Device::current().tones;
    if (!tones) return platform::failure("This phone has no tones.");
    return tones->sound(identifier);
}

std::optional<std::string> Serve::imageFile(std::string_view name) const {
    const auto path = application_.images().imagePath(name);
    if (!path) return std::nullopt;
    std::string file = files_->hostPath(*path);
    if (file.empty()) return std::nullopt;
    return file;
}

}  // namespace settings
