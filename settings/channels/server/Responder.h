// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/foundation/ToneSource.h"

namespace settings::server {

using HeaderField = std::pair<std::string, std::string>;

/// The first line and the headers of a request, as they came.
struct Request {
    std::string method;
    std::string target;
    std::vector<HeaderField> fields;
    /// A complete request to change to the WebSocket protocol.
    bool asksForWebSocket = false;
};

/// Whether a connection may go on with another request after an answer.
enum class AfterAnswer { KeepOpen, Close };

/// An answer but for what belongs to the transport (length, connection, version).
struct Response {
    unsigned status = 500;
    std::vector<HeaderField> fields;
    std::string body;
    AfterAnswer after = AfterAnswer::KeepOpen;
};

/// The answer to a request that may become a WebSocket.
struct AcceptWebSocket {};

/// The answer to a request for a sound: to be had from the application, and given with Responder::sound().
struct AskForSound {
    std::string identifier;
};

using Answer = std::variant<Response, AcceptWebSocket, AskForSound>;

/// Decides what each request is answered: who is let in, and what there is to have. Holds no connection and
/// changes nothing, so one serves them all. Used on the server's thread.
class Responder {
  public:
    using ImageFile = std::function<std::optional<std::string>(std::string_view imageName)>;

    /// `port` is the one listened on, `secret` what opens all but the page itself; the others as in
    /// ServerOptions.
    Responder(std::uint16_t port, std::string secret, std::string pageDirectory, ImageFile imageFile);

    /// Checks in this order, so that nothing is told to whom it does not concern: Host, Origin, method, form
    /// of the target, and for what shows anything of the phone the secret, before it is looked for. A
    /// WebSocket is accepted without the secret, which has to be its first message.
    Answer answer(const Request& request) const;

    /// Whether the request brings the secret, as "Authorization: Bearer SECRET".
    bool showsSecret(const Request& request) const;

    /// The sound that a request was answered AskForSound for; an error is told as the reason why there is
    /// none, and so is a sound of more than 8 MiB or of a media type that is not audio.
    static Response sound(const Request& request, const platform::Result<platform::ToneSound>& sound);

    /// A refusal with a one-line text, after which the connection is closed.
    static Response refusal(unsigned status, std::string_view sentence);

  private:
    Response image(const Request& request, std::string_view name) const;
    Response page(const Request& request, std::string_view path) const;

    std::uint16_t port_;
    std::string secret_;
    std::string pageDirectory_;
    ImageFile imageFile_;
};

}  // namespace settings::server
