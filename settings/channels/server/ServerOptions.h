// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Error.h"

namespace settings::server {

/// Bounds on what clients may ask of a Server. The defaults suit a browser; tests make them smaller.
struct ServerLimits {
    /// Connections that have shown the secret, of both kinds at once. For a further WebSocket, one that only
    /// might send another request makes room; without any it is closed with code 1013.
    std::size_t connections = 64;
    /// Connections that have not shown it. For a further one, the one that has been idle longest makes room.
    std::size_t strangers = 128;
    /// Longest WebSocket message taken from a client, in bytes; a longer one ends its connection with code
    /// 1009.
    std::size_t messageBytes = std::size_t{1} << 20;
    /// Bytes that one client may have sent and the application not yet taken; from then on it is not read
    /// from. One message more may be on the way.
    std::size_t inboxBytes = std::size_t{256} << 10;
    /// Bytes that may wait to be sent to one client. A client that lets more pile up is disconnected.
    std::size_t queuedBytes = std::size_t{64} << 20;
    /// From the moment a connection may send a request until its last header byte, which is also how long an
    /// idle connection is kept; and how long an answer may take to be read.
    std::chrono::milliseconds requestTimeout = std::chrono::seconds{15};
    /// The same for a connection that has not shown the secret, until it has sent a request or, as a
    /// WebSocket, the secret.
    std::chrono::milliseconds strangerTimeout = std::chrono::seconds{5};
    /// How long a request for a sound waits for the application, which may be busy.
    std::chrono::milliseconds soundTimeout = std::chrono::seconds{10};
    /// A WebSocket client silent for half of this is pinged, and disconnected when it then is silent for as
    /// long again.
    std::chrono::milliseconds idleTimeout = std::chrono::seconds{60};
    /// How long a client may take to read what is left and to answer a close, before it is cut off.
    std::chrono::milliseconds closeTimeout = std::chrono::seconds{2};
};

/// What a Server serves, and where.
struct ServerOptions {
    /// Port on 127.0.0.1; 0 for any free one.
    std::uint16_t port = 0;
    /// A socket that listens already, in the place of the port; the server owns it. -1 for none.
    int listener = -1;
    /// Host directory of the page's files; "index.html" in it answers "/". Looked at anew for each request,
    /// so a directory that is missing or rebuilt while the server runs is no error of the server's.
    std::string pageDirectory;
    /// The host path of the image of that name, or nothing when there is none of it. Called on the server's
    /// thread with a name from outside: look it up, never make a path of it. May be empty: no images.
    std::function<std::optional<std::string>(std::string_view imageName)> imageFile;
    /// The secret that lets pages in, characters that may stand in an address, many and unpredictable; asked
    /// for once the port is had, within Server::start(). May be empty: one is made up.
    std::function<platform::Result<std::string>(std::uint16_t port)> secret;
    ServerLimits limits = {};
};

}  // namespace settings::server
