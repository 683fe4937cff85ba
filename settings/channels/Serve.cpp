// SPDX-License-Identifier: MIT
#include "settings/channels/Serve.h"

#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <utility>

#include "platform/foundation/Device.h"
#include "platform/foundation/RunLoop.h"

namespace settings {

using platform::Result;
using platform::RunLoop;
using server::ConnectionId;
using server::Server;
using server::SoundRequestId;

namespace {

/// For so long commands are answered at a stretch; then the loop goes around, and pages are told what has
/// changed.
constexpr std::chrono::milliseconds longestStretch{50};

std::unexpected<platform::Error> systemFailure(const char* what) {
    return platform::failure(std::string(what) + " could not be made: " + std::strerror(errno) + ".");
}

/// Nobody can come to a page whose address was not told.
Result<void> print(std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(STDOUT_FILENO, text.data(), text.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0)
            return platform::failure(
                "The address could not be printed: " + std::string(std::strerror(errno)) + ".");
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return {};
}

}  // namespace

Serve::Serve(Application& application, std::shared_ptr<platform::FileSystem> files)
    : application_(application),
      files_(std::move(files)),
      clients_(
          application,
          [this](ConnectionId connection, std::string text) { server_->send(connection, std::move(text)); },
          [this](ConnectionId connection, std::size_t bytes) { server_->taken(connection, bytes); }) {}

Serve::~Serve() {
    server_.reset();
    RunLoop::main().setBeforeSleeping([&application = application_] { application.keepUp(); });
    for (const int descriptor : {wakeUp_, signals_, deadlines_}) {
        if (descriptor < 0) continue;
        RunLoop::main().unwatch(descriptor);
        close(descriptor);
    }
}

Result<void> Serve::run(const ServeOptions& options) {
    // Before the server's thread starts, which takes over which signals are held back.
    if (Result<void> watched = watchSignals(); !watched) return watched;
    if (Result<void> watched = watchInbox(); !watched) return watched;
    if (Result<void> watched = watchDeadlines(); !watched) return watched;
    RunLoop::main().setBeforeSleeping([this] { pushChanges(); });

    server::ServerOptions serverOptions;
    serverOptions.port = options.port;
    serverOptions.pageDirectory = options.pageDirectory;
    serverOptions.imageFile = [this](std::string_view name) { return imageFile(name); };
    // No page can be waiting at a port that is another one with each start.
    if (options.port != 0) {
        serverOptions.secret = [&](std::uint16_t port) {
            return server::keptSecret({options.runtimeDirectory, options.rootDirectory, port},
                                      options.oldSecret);
        };
    }
    Result<std::unique_ptr<Server>> server = Server::start(std::move(serverOptions), *this);
    if (!server) return std::unexpected(server.error());
    server_ = std::move(*server);
    if (Result<void> printed = print("Quietrix Settings is at " + server_->url() + "\n"); !printed)
        return printed;
    if (!isEnding()) RunLoop::main().run();
    return {};
}

void Serve::opened(ConnectionId connection) {
    put({Message::Kind::Opened, connection, {}});
}

void Serve::received(ConnectionId connection, std::string text) {
    put({Message::Kind::Received, connection, std::move(text)});
}

void Serve::closed(ConnectionId connection) {
    put({Message::Kind::Closed, connection, {}});
}

void Serve::soundAsked(SoundRequestId request, std::string identifier) {
    put({Message::Kind::SoundAsked, request, std::move(identifier)});
}

void Serve::put(Message message) {
    const std::lock_guard lock(mutex_);
    inbox_.push_back(std::move(message));
    comeBack();
}

std::deque<Serve::Message> Serve::takeAll() {
    const std::lock_guard lock(mutex_);
    return std::exchange(inbox_, {});
}

void Serve::comeBack() {
    // Cannot fail: the counter is far from full.
    eventfd_write(wakeUp_, 1);
}

Result<void> Serve::watchSignals() {
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t ends;
    sigemptyset(&ends);
    sigaddset(&ends, SIGINT);
    sigaddset(&ends, SIGTERM);
    if (pthread_sigmask(SIG_BLOCK, &ends, nullptr) != 0) return systemFailure("The watch for signals");
    signals_ = signalfd(-1, &ends, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signals_ < 0) return systemFailure("The watch for signals");
    RunLoop::main().watch(signals_, [this] {
        if (isEnding()) RunLoop::main().stop();
    });
    return {};
}

Result<void> Serve::watchInbox() {
    wakeUp_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeUp_ < 0) return systemFailure("The inbox");
    RunLoop::main().watch(wakeUp_, [this] { handleInbox(); });
    return {};
}

Result<void> Serve::watchDeadlines() {
    deadlines_ = timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
    if (deadlines_ < 0) return systemFailure("The timer");
    // What is to be done then is done before the loop sleeps again.
    RunLoop::main().watch(deadlines_, [this] {
        std::uint64_t times = 0;
        [[maybe_unused]] const ssize_t count = read(deadlines_, &times, sizeof times);
    });
    return {};
}

void Serve::handleInbox() {
    eventfd_t counted = 0;
    eventfd_read(wakeUp_, &counted);
    const auto end = std::chrono::steady_clock::now() + longestStretch;
    do {
        if (isEnding()) return RunLoop::main().stop();
        sortInbox();
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
                server_->giveSound(message.id, sound(message.text));
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
    if (clients_.hasCommands()) comeBack();
    // What has come since stays queued: to run it here would let the loop sleep without another push.
    application_.events().trim();
}

void Serve::setDeadline() {
    itimerspec setting{};
    if (const auto deadline = clients_.nextDeadline()) {
        using std::chrono::nanoseconds;
        const auto time = std::chrono::duration_cast<nanoseconds>(deadline->time_since_epoch()).count();
        setting.it_value = {time / 1'000'000'000, time % 1'000'000'000};
    }
    // Cannot fail with a time that the clock itself gave.
    timerfd_settime(deadlines_, TFD_TIMER_ABSTIME, &setting, nullptr);
}

bool Serve::isEnding() {
    signalfd_siginfo information{};
    while (signals_ >= 0 && read(signals_, &information, sizeof information) == sizeof information)
        ending_ = true;
    return ending_;
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
