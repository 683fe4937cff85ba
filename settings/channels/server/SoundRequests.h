// SPDX-License-Identifier: MIT
#pragma once

// A part of Server.cpp, and included by nothing else: it brings the whole HTTP library with it.

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "settings/channels/server/PageStream.h"
#include "settings/channels/server/Responder.h"
#include "settings/channels/server/ServerHandler.h"

namespace settings::server {

/// The requests for sounds that wait for the application. Lives on the server's thread.
class SoundRequests {
  public:
    SoundRequests(asio::io_context& io, ServerHandler& handler, std::chrono::milliseconds patience)
        : io_(io), handler_(handler), patience_(patience) {}

    /// Only the connection that asks waits meanwhile. A page that has gone is found out when it is written
    /// to.
    asio::awaitable<Response> ask(Request request, std::string identifier) {
        const auto wait = std::make_shared<Wait>(io_);
        const SoundRequestId id = ++last_;
        waits_.emplace(id, wait);
        wait->timer.expires_after(patience_);
        try {
            handler_.soundAsked(id, std::move(identifier));
        } catch (...) {
            waits_.erase(id);
            throw;
        }
        co_await wait->timer.async_wait(asResult);
        waits_.erase(id);
        if (!wait->sound) {
            Response busy = Responder::refusal(503, "The application is busy; the sound can be had later.");
            busy.fields.emplace_back("Retry-After", "1");
            co_return busy;
        }
        co_return Responder::sound(request, *wait->sound);
    }

    /// The answer to such a request, which nobody may be waiting for any more.
    void give(SoundRequestId request, platform::Result<platform::ToneSound> sound) {
        const auto found = waits_.find(request);
        if (found == waits_.end()) return;
        found->second->sound = std::move(sound);
        found->second->timer.cancel();
    }

  private:
    /// The timer's end is the end of the waiting.
    struct Wait {
        explicit Wait(asio::io_context& io) : timer(io) {}

        asio::steady_timer timer;
        std::optional<platform::Result<platform::ToneSound>> sound;
    };

    asio::io_context& io_;
    ServerHandler& handler_;
    std::chrono::milliseconds patience_;
    SoundRequestId last_ = 0;
    std::map<SoundRequestId, std::shared_ptr<Wait>> waits_;
};

}  // namespace settings::server
