// SPDX-License-Identifier: MIT
#include "settings/channels/ServedChannel.h"

#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include "device/Interruption.h"
#include "platform/foundation/RunLoop.h"

namespace settings {

using platform::Result;
using platform::RunLoop;
using server::ConnectionId;
using server::Server;
using server::SoundRequestId;

namespace {

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

ServedChannel::~ServedChannel() {
    server_.reset();
    for (const int descriptor : {wakeUp_, signals_}) {
        if (descriptor < 0) continue;
        RunLoop::main().unwatch(descriptor);
        close(descriptor);
    }
}

Result<void> ServedChannel::watch() {
    std::signal(SIGPIPE, SIG_IGN);
    const sigset_t ends = device::endingSignals();
    if (pthread_sigmask(SIG_BLOCK, &ends, nullptr) != 0) return systemFailure("The watch for signals");
    signals_ = signalfd(-1, &ends, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signals_ < 0) return systemFailure("The watch for signals");
    RunLoop::main().watch(signals_, [this] {
        if (isEnding()) RunLoop::main().stop();
    });
    wakeUp_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeUp_ < 0) return systemFailure("The inbox");
    RunLoop::main().watch(wakeUp_, [this] {
        eventfd_t counted = 0;
        eventfd_read(wakeUp_, &counted);
        if (isEnding()) return RunLoop::main().stop();
        handleInbox();
    });
    return {};
}

Result<void> ServedChannel::listen(server::ServerOptions options) {
    Result<std::unique_ptr<Server>> server = Server::start(std::move(options), *this);
    if (!server) return std::unexpected(server.error());
    server_ = std::move(*server);
    return {};
}

void ServedChannel::runUntilEnded() {
    if (!isEnding()) RunLoop::main().run();
}

Result<void> ServedChannel::tellAddress(std::string_view query) {
    std::string address = server_->url();
    address.insert(address.find('#'), query);
    return print("Quietrix Settings is at " + address + "\n");
}

Result<void> ServedChannel::serve(server::ServerOptions options, std::string_view query) {
    if (Result<void> listening = listen(std::move(options)); !listening) return listening;
    if (Result<void> told = tellAddress(query); !told) return told;
    runUntilEnded();
    return {};
}

void ServedChannel::opened(ConnectionId connection) {
    put({Message::Kind::Opened, connection, {}});
}

void ServedChannel::received(ConnectionId connection, std::string text) {
    put({Message::Kind::Received, connection, std::move(text)});
}

void ServedChannel::closed(ConnectionId connection) {
    put({Message::Kind::Closed, connection, {}});
}

void ServedChannel::soundAsked(SoundRequestId request, std::string identifier) {
    put({Message::Kind::SoundAsked, request, std::move(identifier)});
}

void ServedChannel::put(Message message) {
    const std::lock_guard lock(mutex_);
    inbox_.push_back(std::move(message));
    comeBack();
}

std::deque<ServedChannel::Message> ServedChannel::takeAll() {
    const std::lock_guard lock(mutex_);
    return std::exchange(inbox_, {});
}

void ServedChannel::comeBack() {
    // Cannot fail: the counter is far from full.
    eventfd_write(wakeUp_, 1);
}

bool ServedChannel::isEnding() {
    signalfd_siginfo information{};
    while (signals_ >= 0 && read(signals_, &information, sizeof information) == sizeof information)
        ending_ = true;
    return ending_;
}

}  // namespace settings
