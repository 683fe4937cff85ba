// SPDX-License-Identifier: MIT
#pragma once

// A part of Server.cpp, and included by nothing else: it brings the whole HTTP library with it.

#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <boost/beast/websocket.hpp>
#include <optional>
#include <tuple>
#include <utility>

#include "settings/channels/server/PageStream.h"
#include "settings/channels/server/Responder.h"

namespace settings::server {

// How a request becomes what the Responder reads, and how its answer goes out.

using Message = http::request<http::empty_body>;

inline Request requestFrom(const Message& message) {
    Request request;
    request.method = message.method_string();
    request.target = message.target();
    for (const auto& field : message) request.fields.emplace_back(field.name_string(), field.value());
    request.asksForWebSocket = websocket::is_upgrade(message);
    return request;
}

/// What to tell a client whose request could not be read; nothing when it has gone or has been too slow.
inline std::optional<Response> refusalOf(error_code error) {
    if (error == http::error::end_of_stream ||
        error.category() != error_code(http::error::bad_value).category())
        return std::nullopt;
    if (error == http::error::header_limit || error == http::error::buffer_overflow)
        return Responder::refusal(431, "The request's headers are longer than 16 KiB.");
    if (error == http::error::body_limit) return Responder::refusal(413, "A request may have no body.");
    return Responder::refusal(400, "The request is not valid HTTP.");
}

/// Whether the connection may go on with another request.
inline asio::awaitable<bool> write(beast::tcp_stream& stream, const Message& request, Response answer) {
    http::response<http::string_body> message(static_cast<http::status>(answer.status), request.version());
    for (const auto& [name, value] : answer.fields) message.insert(name, value);
    message.body() = std::move(answer.body);
    message.keep_alive(answer.after == AfterAnswer::KeepOpen && request.keep_alive());
    message.prepare_payload();
    const bool goesOn = message.keep_alive();
    http::response_serializer<http::string_body> serializer(message);
    error_code error;
    if (request.method() == http::verb::head)
        std::tie(error, std::ignore) = co_await http::async_write_header(stream, serializer, asResult);
    else
        std::tie(error, std::ignore) = co_await http::async_write(stream, serializer, asResult);
    co_return !error && goesOn;
}

}  // namespace settings::server
