// SPDX-License-Identifier: MIT
#include "settings/Serve.h"

#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include "platform/foundation/Device.h"
#include "platform/foundation/RunLoop.h"

namespace settings {

using platform::Result;
using platform::RunLoop;

namespace {

/// A page that sends this many commands without waiting for an answer is none of ours; and so many sounds
/// are not waited for by anyone.
constexpr std::size_t longestInbox = 4096;

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
    : application_(application), files_(std::move(files)) {}

Serve::~Serve() {
    server_.reset();
    RunLoop::main().setBeforeSleeping([&application = application_] { application.keepUp(); });
    for (const int descriptor : {wakeUp_, signals_}) {
        if (descriptor < 0) continue;
        RunLoop::main().unwatch(descriptor);
        close(descriptor);
    }
}

Result<void> Serve::run(std::uint16_t port, const std::string& pageDirectory) {
    // Before the server's thread starts, which takes over which signals are held back.
    if (Result<void> watched = watchSignals(); !watched) return watched;
    if (Result<void> watched = watchInbox(); !watched) return watched;
    RunLoop::main().setBeforeSleeping([this] { pushChanges(); });

    ServerOptions options;
    options.port = port;
    options.pageDirectory = pageDirectory;
    options.imageFile = [this](std::string_view name) { return imageFile(name); };
    Result<std::unique_ptr<Server>> server = Server::start(std::move(options), *this);
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
    if (inbox_.size() >= longestInbox) {
        if (message.kind == Message::Kind::SoundAsked) return;
        if (message.kind == Message::Kind::Received) message = {Message::Kind::Closed, message.id, {}};
    }
    inbox_.push_back(std::move(message));
    // Cannot fail: the counter is far from full.
    eventfd_write(wakeUp_, 1);
}

std::optional<Serve::Message> Serve::take() {
    const std::lock_guard lock(mutex_);
    if (inbox_.empty()) return std::nullopt;
    Message message = std::move(inbox_.front());
    inbox_.pop_front();
    return message;
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

void Serve::handleInbox() {
    eventfd_t counted = 0;
    eventfd_read(wakeUp_, &counted);
    while (!isEnding()) {
        auto message = take();
        if (!message) return;
        handle(*message);
    }
    RunLoop::main().stop();
}

void Serve::handle(const Message& message) {
    // Requests for sounds are counted apart from connections; they have no session.
    const auto session =
        message.kind == Message::Kind::SoundAsked ? sessions_.end() : sessions_.find(message.id);
    switch (message.kind) {
        case Message::Kind::Opened:
            sessions_.try_emplace(message.id, application_).first->second.setInterruption([this] {
                return isEnding();
            });
            return;
        case Message::Kind::Received:
            if (session != sessions_.end()) server_->send(message.id, session->second.answer(message.text));
            return;
        case Message::Kind::Closed:
            if (session != sessions_.end()) sessions_.erase(session);
            server_->close(message.id);
            return;
        case Message::Kind::SoundAsked:
            server_->giveSound(message.id, sound(message.text));
            return;
    }
}

void Serve::pushChanges() {
    // Whoever is asked first sees nothing half done, and each event has its outcome.
    RunLoop::main().drain();
    application_.events().collect();
    for (auto& [connection, session] : sessions_) {
        if (auto state = session.push()) server_->send(connection, std::move(*state));
    }
    // What has come since stays queued: to run it here would let the loop sleep without another push.
    application_.events().trim();
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
