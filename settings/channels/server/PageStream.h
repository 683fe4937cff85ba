// SPDX-License-Identifier: MIT
#pragma once

// A part of Server.cpp, and included by nothing else: it brings the whole HTTP and WebSocket library with it.

#include <array>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/websocket.hpp>
#include <chrono>
#include <exception>
#include <tuple>
#include <utility>

namespace settings::server {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
namespace websocket = beast::websocket;
using tcp = asio::ip::tcp;
using boost::system::error_code;

/// Makes an awaited operation give its error as a value in place of an exception.
constexpr auto asResult = asio::as_tuple(asio::use_awaitable);

/// Ends a connection so that the client gets the last that was sent: closing a socket that has unread bytes
/// would throw away what the client has not taken yet. Waits for the client to leave, no longer than
/// `patience`.
inline asio::awaitable<void> hangUp(beast::tcp_stream& stream, std::chrono::milliseconds patience) {
    std::array<char, 16384> scrap{};
    error_code error;
    stream.socket().shutdown(tcp::socket::shutdown_send, error);
    stream.expires_after(patience);
    while (!error)
        std::tie(error, std::ignore) = co_await stream.async_read_some(asio::buffer(scrap), asResult);
    stream.close();
}

/// The connection beneath a WebSocket, ended by hangUp(): the library's own way reads on once at most, so
/// that a client in the middle of a long message would lose the code its connection was closed with.
class PageStream : public beast::tcp_stream {
  public:
    PageStream(beast::tcp_stream stream, std::chrono::milliseconds patience)
        : beast::tcp_stream(std::move(stream)), patience_(patience) {}

    /// Found by the library by its name when a WebSocket has said its last.
    template <class Handler>
    friend void async_teardown(beast::role_type, PageStream& stream, Handler&& handler) {
        asio::co_spawn(stream.get_executor(), hangUp(stream, stream.patience_),
                       [done = std::forward<Handler>(handler)](const std::exception_ptr&) mutable {
                           done(error_code());
                       });
    }

  private:
    std::chrono::milliseconds patience_;
};

}  // namespace settings::server
