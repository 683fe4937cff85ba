// SPDX-License-Identifier: MIT
#pragma once

// A part of Server.cpp, and included by nothing else: it brings the whole WebSocket library with it.

#include <boost/asio/buffer.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/websocket.hpp>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "settings/server/PageStream.h"
#include "settings/server/ServerOptions.h"

namespace settings {

using Message = http::request<http::empty_body>;

/// One WebSocket: its queue of messages to send, and its end. Lives on the server's thread.
class Channel : public std::enable_shared_from_this<Channel> {
  public:
    Channel(beast::tcp_stream stream, const ServerLimits& limits)
        : stream_(std::move(stream), limits.closeTimeout),
          deadline_(stream_.get_executor()),
          limits_(limits) {
        stream_.set_option(websocket::stream_base::timeout{limits.closeTimeout, limits.idleTimeout, true});
        stream_.set_option(websocket::stream_base::decorator([](websocket::response_type& response) {
            response.set(http::field::server, "Quietrix Settings");
            response.set(http::field::cache_control, "no-store");
        }));
        stream_.read_message_max(limits.messageBytes);
        stream_.auto_fragment(false);
    }

    /// Answers the request that asks for the WebSocket; false when the client has to go without.
    asio::awaitable<bool> accept(const Message& request) {
        const auto [error] = co_await stream_.async_accept(request, asResult);
        co_return !error;
    }

    /// Hands over each text message until the connection is gone, whoever ends it.
    asio::awaitable<void> readAll(std::function<void(std::string)> deliver) {
        beast::flat_buffer buffer;
        for (;;) {
            const auto [error, count] = co_await stream_.async_read(buffer, asResult);
            if (error) co_return;
            if (!closing_ && !stream_.got_text()) close(websocket::close_code::unknown_data);
            if (!closing_) deliver(beast::buffers_to_string(buffer.data()));
            buffer.consume(buffer.size());
        }
    }

    /// Queues a message; a client that has let too many bytes pile up is cut off instead.
    void send(std::string text) {
        if (closing_) return;
        queuedBytes_ += text.size() + messageOverhead;
        if (queuedBytes_ > limits_.queuedBytes) return cutOff();
        queue_.push_back(std::move(text));
        if (queue_.size() == 1) writeNext();
    }

    /// Closes with that code once the queue is sent, and cuts off a client that takes too long over it.
    void close(websocket::close_code code) {
        if (closing_) return;
        closing_ = true;
        closeCode_ = code;
        deadline_.expires_after(limits_.closeTimeout);
        deadline_.async_wait([channel = weak_from_this()](error_code error) {
            const auto self = channel.lock();
            if (!error && self) self->cutOff();
        });
        if (queue_.empty()) sendClose();
    }

    /// Ends the connection without a word. What is being read or written ends with an error.
    void cutOff() {
        closing_ = true;
        deadline_.cancel();
        beast::get_lowest_layer(stream_).close();
    }

  private:
    /// What a queued message costs beside its bytes, so that many empty ones count too.
    static constexpr std::size_t messageOverhead = sizeof(std::string);

    void writeNext() {
        stream_.async_write(
            asio::buffer(queue_.front()),
            [self = shared_from_this()](error_code error, std::size_t) { self->written(error); });
    }

    void written(error_code error) {
        if (error) return cutOff();
        queuedBytes_ -= queue_.front().size() + messageOverhead;
        queue_.pop_front();
        if (!queue_.empty())
            writeNext();
        else if (closing_)
            sendClose();
    }

    void sendClose() {
        stream_.async_close(closeCode_, [self = shared_from_this()](error_code) { self->cutOff(); });
    }

    websocket::stream<PageStream> stream_;
    asio::steady_timer deadline_;
    const ServerLimits& limits_;
    std::deque<std::string> queue_;
    std::size_t queuedBytes_ = 0;
    bool closing_ = false;
    websocket::close_code closeCode_ = websocket::close_code::normal;
};

}  // namespace settings
