// SPDX-License-Identifier: MIT
#include "settings/channels/server/Listener.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace settings::server {

namespace {

std::unexpected<platform::Error> failureOf(std::uint16_t port, int reason) {
    const std::string place = "Port " + std::to_string(port) + " of 127.0.0.1 ";
    if (reason == EADDRINUSE) return platform::failure(place + "is in use by another program.");
    return platform::failure(place + "cannot be listened on: " + std::strerror(reason) + ".");
}

}  // namespace

platform::Result<int> listenOnLoopback(std::uint16_t port) {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (listener < 0) return failureOf(port, errno);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int yes = 1;
    // The library's own call, whose address type is the one of every family.
    const auto* any = reinterpret_cast<const sockaddr*>(&address);
    if (setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes) == 0 &&
        bind(listener, any, sizeof address) == 0 && listen(listener, SOMAXCONN) == 0)
        return listener;
    const int reason = errno;
    close(listener);
    return failureOf(port, reason);
}

std::uint16_t portOfListener(int listener) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
        address.sin_family != AF_INET)
        return 0;
    return ntohs(address.sin_port);
}

}  // namespace settings::server
