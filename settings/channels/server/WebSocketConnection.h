// SPDX-License-Identifier: MIT
#pragma once

// A part of Server.cpp, and included by nothing else: it brings the whole WebSocket library with it.

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/websocket.hpp>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "settings/channels/server/HTTPMessages.h"
#include "settings/channels/server/PageStream.h"
#include "settings/channels/server/ServerOptions.h"

namespace settings::server {

/// One WebSocket: what it takes in and no faster than that is dealt with, its queue of messages to send, and
/// its end. Lives on the server's thread.
class WebSocketConnection : public std::enable_shared_from_this<WebSocketConnection> {
  public:
    WebSocketConnection(beast::tcp_stream stream, const ServerLimits& limits)
        : stream_(std::move(stream), limits.closeTimeout),
          deadline_(stream_.get_executor()),
          silence_(stream_.get_executor()),
          taken_(stream_.get_executor()),
          limits_(limits) {
        // The library would take a client that is not being read for a silent one.
        stream_.set_option(
            websocket::stream_base::timeout{limits.closeTimeout, websocket::stream_base::none(), false});
        stream_.set_option(websocket::stream_base::decorator([](websocket::response_type& response) {
            response.set(http::field::server, "Quietrix Settings");
            response.set(http::field::cache_control, "no-store");
        }));
        stream_.control_callback([this](websocket::frame_type, beast::string_view) { heard_ = true; });
        stream_.read_message_max(limits.messageBytes);
        stream_.auto_fragment(false);
        taken_.expires_at(asio::steady_timer::time_point::max());
    }

    /// Answers the request that asks for the WebSocket; false when the client has to go without.
    asio::awaitable<bool> accept(const Message& request) {
        const auto [error] = co_await stream_.async_accept(request, asResult);
        co_return !error;
    }

    /// Begins the time that the client has to show the secret; isLetIn() ends it.
    void expectSecret(std::chrono::milliseconds patience) {
        deadline_.expires_after(patience);
        deadline_.async_wait([weak = weak_from_this()](error_code error) {
            const auto self = weak.lock();
            if (!error && self && !self->letIn_) self->close(websocket::close_code::policy_error);
        });
    }

    /// The next message, as long as the client has not been let in; nothing when it is none that could be a
    /// secret, or when the connection is gone or being closed.
    asio::awaitable<std::optional<std::string>> readFirst(std::size_t longest) {
        beast::flat_buffer buffer;
        do {
            const std::size_t left = longest + 1 - buffer.size();
            const auto [error, count] = co_await stream_.async_read_some(buffer, left, asResult);
            if (error || closing_ || buffer.size() > longest) co_return std::nullopt;
        } while (!stream_.is_message_done());
        if (!stream_.got_text()) co_return std::nullopt;
        co_return beast::buffers_to_string(buffer.data());
    }

    /// From here on the client is looked after for as long as it likes to stay.
    void isLetIn() {
        letIn_ = true;
        deadline_.cancel();
        watchSilence();
    }

    /// Hands over each text message until the connection is gone, whoever ends it. Reads no further while too
    /// much of what was handed over has not been taken.
    asio::awaitable<void> readAll(std::function<void(std::string)> deliver) {
        beast::flat_buffer buffer;
        for (;;) {
            const auto [error, count] = co_await stream_.async_read(buffer, asResult);
            if (error) co_return;
            heard_ = true;
            if (!closing_ && !stream_.got_text()) close(websocket::close_code::unknown_data);
            if (!closing_) {
                untakenBytes_ += buffer.size() + messageOverhead;
                deliver(beast::buffers_to_string(buffer.data()));
            }
            buffer.consume(buffer.size());
            while (untakenBytes_ >= limits_.inboxBytes && !closing_) co_await nextTaken();
        }
    }

    /// A message of that many bytes has been dealt with.
    void taken(std::size_t bytes) {
        untakenBytes_ -= std::min(untakenBytes_, bytes + messageOverhead);
        taken_.cancel();
    }

    /// Nothing more will be taken.
    void forgetUntaken() {
        untakenBytes_ = 0;
        taken_.cancel();
    }

    /// Waits until all that was handed over has been taken.
    asio::awaitable<void> untilAllTaken() {
        while (untakenBytes_ > 0) co_await nextTaken();
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
    void close(const websocket::close_reason& reason) {
        if (closing_) return;
        closing_ = true;
        taken_.cancel();
        closeReason_ = reason;
        deadline_.expires_after(limits_.closeTimeout);
        deadline_.async_wait([weak = weak_from_this()](error_code error) {
            const auto self = weak.lock();
            if (!error && self) self->cutOff();
        });
        if (queue_.empty()) sendClose();
    }

    /// Ends the connection without a word. What is being read or written ends with an error.
    void cutOff() {
        closing_ = true;
        deadline_.cancel();
        silence_.cancel();
        taken_.cancel();
        beast::get_lowest_layer(stream_).close();
    }

  private:
    /// What a queued message costs beside its bytes, so that many empty ones count too.
    static constexpr std::size_t messageOverhead = sizeof(std::string);

    asio::awaitable<void> nextTaken() { co_await taken_.async_wait(asResult); }

    void watchSilence() {
        silence_.expires_after(limits_.idleTimeout / 2);
        silence_.async_wait([weak = weak_from_this()](error_code error) {
            const auto self = weak.lock();
            if (!error && self && !self->closing_) self->wasSilent();
        });
    }

    /// Half of the time that a client may be silent has passed.
    void wasSilent() {
        // Who is not being read cannot be heard.
        const bool isRead = untakenBytes_ < limits_.inboxBytes;
        if (std::exchange(heard_, false) || !isRead) {
            pinged_ = false;
        } else if (pinged_) {
            return cutOff();
        } else {
            pinged_ = true;
            stream_.async_ping({}, [self = shared_from_this()](error_code) {});
        }
        watchSilence();
    }

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
        stream_.async_close(closeReason_, [self = shared_from_this()](error_code) { self->cutOff(); });
    }

    websocket::stream<PageStream> stream_;
    /// The end of the client's time to show the secret, then of its time to close.
    asio::steady_timer deadline_;
    asio::steady_timer silence_;
    /// Never expires: whoever waits for it is woken when messages were taken.
    asio::steady_timer taken_;
    const ServerLimits& limits_;
    std::deque<std::string> queue_;
    std::size_t queuedBytes_ = 0;
    std::size_t untakenBytes_ = 0;
    bool letIn_ = false;
    bool heard_ = false;
    bool pinged_ = false;
    bool closing_ = false;
    websocket::close_reason closeReason_;
};

}  // namespace settings::server
