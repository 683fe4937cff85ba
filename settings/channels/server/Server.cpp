// SPDX-License-Identifier: MIT
// The only translation unit that includes the HTTP and WebSocket library, which costs each one many seconds
// to compile; WebSocketConnection.h, HTTPMessages.h, PageStream.h and SoundRequests.h are parts of it.
#include "settings/channels/server/Server.h"

#include <fcntl.h>
#include <pthread.h>

#include <algorithm>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <csignal>
#include <cstddef>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>
#include <variant>

#include "settings/channels/server/Descriptors.h"
#include "settings/channels/server/FirstMessage.h"
#include "settings/channels/server/HTTPMessages.h"
#include "settings/channels/server/Listener.h"
#include "settings/channels/server/PageStream.h"
#include "settings/channels/server/Places.h"
#include "settings/channels/server/Responder.h"
#include "settings/channels/server/Secret.h"
#include "settings/channels/server/SoundRequests.h"
#include "settings/channels/server/WebSocketConnection.h"

namespace settings::server {

namespace {

constexpr std::size_t maximumHeaderBytes = std::size_t{16} << 10;
// More than a header, so that it is the header's bound that is met first, and with it the answer that says
// so.
constexpr std::size_t maximumReadAheadBytes = 2 * maximumHeaderBytes;

/// Programs that the application starts must not hold the port or a page's connection open.
void keepFromChildren(int descriptor) {
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
}

}  // namespace

class Server::Core {
  public:
    Core(ServerOptions options, ServerHandler& handler)
        : options_(std::move(options)),
          handler_(handler),
          places_(options_.limits.strangers, options_.limits.connections) {}

    ~Core() {
        if (!thread_.joinable()) return;
        asio::post(io_, [this] { beginStop(); });
        thread_.join();
    }

    Core(const Core&) = delete;
    Core& operator=(const Core&) = delete;

    platform::Result<void> start() {
        // Beside the connections: the application's own files, and the programs that it starts.
        constexpr std::size_t others = 128;
        const std::size_t allowed =
            allowDescriptors(options_.limits.strangers + options_.limits.connections + others);
        fewDescriptorsFrom_ = allowed - std::min(others, allowed) / 4;
        if (auto listening = listen(); !listening) return listening;
        // Only now: while another program has the port, its secret is none of ours.
        auto secret = options_.secret ? options_.secret(port_) : makeSecret();
        if (!secret) return std::unexpected(secret.error());
        secret_ = *secret;
        responder_.emplace(port_, secret_, options_.pageDirectory, options_.imageFile);
        asio::co_spawn(io_, acceptAll(), asio::detached);

        // Signals are the main thread's: the new thread inherits a mask that refuses them all.
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
        std::string reason;
        try {
            thread_ = std::thread([this] { run(); });
        } catch (const std::system_error& error) {
            reason = error.what();
        }
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        if (!reason.empty())
            return platform::failure("The server's thread cannot be started: " + reason + ".");
        return {};
    }

    std::uint16_t port() const { return port_; }
    const std::string& secret() const { return secret_; }

    /// Runs an action on a socket on the server's thread, if it is still there by then.
    template <class Action>
    void withSocket(ConnectionId connection, Action action) {
        asio::post(io_, [this, connection, action = std::move(action)]() mutable {
            const auto found = sockets_.find(connection);
            if (found != sockets_.end()) action(*found->second);
        });
    }

    /// Takes the answer to soundAsked() over to the server's thread; nobody may be waiting any more.
    void giveSound(SoundRequestId request, platform::Result<platform::ToneSound> sound) {
        asio::post(io_, [this, request, sound = std::move(sound)]() mutable {
            sounds_.give(request, std::move(sound));
        });
    }

    void refuseNewcomers() {
        std::promise<void> refused;
        asio::post(io_, [&] {
            error_code ignored;
            acceptor_.close(ignored);
            refused.set_value();
        });
        refused.get_future().wait();
    }

    void sendAllBack() {
        asio::post(io_, [this] {
            for (const auto& [connection, socket] : sockets_)
                socket->close(websocket::close_code::service_restart);
        });
    }

  private:
    platform::Result<void> listen() {
        const auto listener = options_.listener >= 0 ? platform::Result<int>(options_.listener)
                                                     : listenOnLoopback(options_.port);
        if (!listener) return std::unexpected(listener.error());
        port_ = portOfListener(*listener);
        keepFromChildren(*listener);
        error_code error;
        if (acceptor_.assign(tcp::v4(), *listener, error))
            return platform::failure("The server cannot listen: " + error.message() + ".");
        return {};
    }

    void run() {
        for (bool ended = false; !ended;) {
            try {
                io_.run();
                ended = true;
            } catch (...) {
                // What a connection could not cope with has ended that connection; the others go on.
                ended = io_.stopped();
            }
        }
        for (const auto& [connection, socket] : std::exchange(sockets_, {})) {
            if (!closed_.erase(connection)) tellClosed(connection);
        }
    }

    void beginStop() {
        stopping_ = true;
        error_code ignored;
        acceptor_.close(ignored);
        if (sockets_.empty()) return io_.stop();
        for (const auto& [connection, socket] : sockets_) {
            socket->close(websocket::close_code::going_away);
            socket->forgetUntaken();
        }
        stopDeadline_.expires_after(options_.limits.closeTimeout);
        stopDeadline_.async_wait([this](error_code error) {
            if (!error) io_.stop();
        });
    }

    void tellClosed(ConnectionId connection) {
        try {
            handler_.closed(connection);
        } catch (...) {
            // The connection that a failing handler would cost is this one, and it is gone already.
            return;
        }
    }

    asio::awaitable<void> acceptAll() {
        constexpr std::chrono::milliseconds pauseAfterFailure{50};
        asio::steady_timer pause(io_);
        while (acceptor_.is_open()) {
            tcp::socket socket(io_);
            const auto [error] = co_await acceptor_.async_accept(socket, asResult);
            if (error) {
                // Whoever comes while there are no descriptors left gets that of one who can be missed.
                if (isShortage(error) && places_.makeRoom()) continue;
                pause.expires_after(pauseAfterFailure);
                co_await pause.async_wait(asResult);
                continue;
            }
            keepFromChildren(socket.native_handle());
            // The lowest number that is free is given first: one so high says that few are left, and files
            // have to be opened to answer anybody.
            if (static_cast<std::size_t>(socket.native_handle()) >= fewDescriptorsFrom_) places_.makeRoom();
            error_code ignored;
            socket.set_option(tcp::no_delay(true), ignored);
            asio::co_spawn(io_, serve(beast::tcp_stream(std::move(socket))), asio::detached);
        }
    }

    static bool isShortage(error_code error) {
        return error == asio::error::no_descriptors || error == std::errc::too_many_files_open_in_system ||
               error == asio::error::no_buffer_space || error == asio::error::no_memory;
    }

    asio::awaitable<void> serve(beast::tcp_stream stream) {
        Places::Place place = places_.enter([&stream] { stream.close(); });
        beast::flat_buffer buffer(maximumReadAheadBytes);
        for (;;) {
            http::request_parser<http::empty_body> parser;
            parser.header_limit(maximumHeaderBytes);
            parser.body_limit(0);
            stream.expires_after(place.isKnown() ? options_.limits.requestTimeout
                                                 : options_.limits.strangerTimeout);
            const auto [error, count] = co_await http::async_read_header(stream, buffer, parser, asResult);
            place.set(Activity::Busy);
            Answer answer;
            if (error) {
                auto refusal = refusalOf(error);
                if (!refusal) co_return;
                answer = std::move(*refusal);
            } else if (parser.chunked()) {
                answer = Responder::refusal(413, "A request may have no body.");
            } else {
                answer = decide(parser.get(), buffer.size(), place);
            }
            if (std::holds_alternative<AcceptWebSocket>(answer)) {
                const Message request = parser.release();
                stream.expires_never();
                const auto socket = std::make_shared<WebSocketConnection>(std::move(stream), options_.limits);
                co_await converse(socket, request, place);
                co_return;
            }
            if (const auto* wanted = std::get_if<AskForSound>(&answer))
                answer = co_await sounds_.ask(requestFrom(parser.get()), wanted->identifier);
            stream.expires_after(options_.limits.requestTimeout);
            const bool goesOn = co_await write(stream, parser.get(), std::move(std::get<Response>(answer)));
            place.set(Activity::Idle);
            if (!goesOn) break;
        }
        co_await hangUp(stream, options_.limits.closeTimeout);
    }

    Answer decide(const Message& message, std::size_t bytesAfterIt, Places::Place& place) const {
        try {
            const Request request = requestFrom(message);
            // Without a free place it is answered all the same, as the stranger that it was.
            if (responder_->showsSecret(request)) place.becomeKnown();
            auto answer = responder_->answer(request);
            if (std::holds_alternative<AcceptWebSocket>(answer) && bytesAfterIt > 0)
                return Responder::refusal(400, "Nothing may follow the request before it is answered.");
            return answer;
        } catch (...) {
            return Responder::refusal(500, "The request could not be answered.");
        }
    }

    asio::awaitable<void> converse(std::shared_ptr<WebSocketConnection> socket, const Message& request,
                                   Places::Place& place) {
        place.setLeave([leaving = std::weak_ptr(socket)] {
            if (const auto self = leaving.lock()) self->cutOff();
        });
        if (!co_await socket->accept(request) || stopping_) co_return;
        place.set(Activity::Idle);
        socket->expectSecret(options_.limits.strangerTimeout);
        if (const auto refusal = co_await letIn(*socket, place)) {
            socket->close(*refusal);
            co_await socket->readAll([](const std::string&) {});
            socket->cutOff();
            co_return;
        }
        if (stopping_) co_return socket->cutOff();
        socket->isLetIn();
        const ConnectionId connection = ++lastConnection_;
        sockets_.emplace(connection, socket);
        try {
            handler_.opened(connection);
            co_await socket->readAll(
                [this, connection](std::string text) { handler_.received(connection, std::move(text)); });
            socket->cutOff();
        } catch (...) {
            socket->cutOff();
            socket->forgetUntaken();
        }
        closed_.insert(connection);
        tellClosed(connection);
        // What it has left behind keeps its place, or coming and going would be a way around the bound.
        co_await socket->untilAllTaken();
        closed_.erase(connection);
        sockets_.erase(connection);
        if (stopping_ && sockets_.empty()) io_.stop();
    }

    /// Nothing once the client has shown the secret, else why it has to go.
    asio::awaitable<std::optional<websocket::close_reason>> letIn(WebSocketConnection& socket,
                                                                  Places::Place& place) {
        const websocket::close_reason wrongSecret(4401);
        auto message = parseFirstMessage(co_await socket.readFirst(FirstMessage::longest));
        if (message && message->kind == FirstMessage::Kind::Prove) {
            socket.send("{\"proof\":\"" + proofOf(secret_, message->text) + "\"}");
            message = parseFirstMessage(co_await socket.readFirst(FirstMessage::longest));
        }
        if (!message || message->kind != FirstMessage::Kind::Secret || !isSecret(message->text, secret_))
            co_return wrongSecret;
        if (!place.becomeKnown()) co_return websocket::close_code::try_again_later;
        place.set(Activity::Busy);
        co_return std::nullopt;
    }

    static std::optional<FirstMessage> parseFirstMessage(const std::optional<std::string>& message) {
        return message ? server::parseFirstMessage(*message) : std::nullopt;
    }

    // Connections still under way are destroyed with io_, so what they use stands before it.
    const ServerOptions options_;
    ServerHandler& handler_;
    std::uint16_t port_ = 0;
    std::string secret_;
    std::optional<Responder> responder_;
    Places places_;
    /// A descriptor of that number or above tells that there are few left.
    std::size_t fewDescriptorsFrom_ = 0;
    ConnectionId lastConnection_ = 0;
    bool stopping_ = false;
    asio::io_context io_{1};
    tcp::acceptor acceptor_{io_};
    asio::steady_timer stopDeadline_{io_};
    std::map<ConnectionId, std::shared_ptr<WebSocketConnection>> sockets_;
    /// Those of the sockets that have ended, with messages that were not taken yet.
    std::set<ConnectionId> closed_;
    SoundRequests sounds_{io_, handler_, options_.limits.soundTimeout};
    std::thread thread_;
};

platform::Result<std::unique_ptr<Server>> Server::start(ServerOptions options, ServerHandler& handler) {
    auto core = std::make_unique<Core>(std::move(options), handler);
    if (auto started = core->start(); !started) return std::unexpected(started.error());
    return std::unique_ptr<Server>(new Server(std::move(core)));
}

Server::Server(std::unique_ptr<Core> core) : core_(std::move(core)) {}

Server::~Server() = default;

std::string Server::url() const {
    return "http://127.0.0.1:" + std::to_string(core_->port()) + "/#secret=" + core_->secret();
}

std::uint16_t Server::port() const {
    return core_->port();
}

void Server::refuseNewcomers() {
    core_->refuseNewcomers();
}

void Server::sendAllBack() {
    core_->sendAllBack();
}

void Server::send(ConnectionId connection, std::string text) {
    core_->withSocket(connection, [text = std::move(text)](WebSocketConnection& socket) mutable {
        socket.send(std::move(text));
    });
}

void Server::taken(ConnectionId connection, std::size_t bytes) {
    core_->withSocket(connection, [bytes](WebSocketConnection& socket) { socket.taken(bytes); });
}

void Server::giveSound(SoundRequestId request, platform::Result<platform::ToneSound> sound) {
    core_->giveSound(request, std::move(sound));
}

void Server::close(ConnectionId connection) {
    core_->withSocket(connection,
                      [](WebSocketConnection& socket) { socket.close(websocket::close_code::normal); });
}

}  // namespace settings::server
