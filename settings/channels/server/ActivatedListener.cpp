// SPDX-License-Identifier: MIT
#include "settings/channels/server/ActivatedListener.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace settings::server {

using platform::failure;
using platform::Result;

namespace {

constexpr int firstDescriptor = 3;

std::string taken(const char* name) {
    // Before any thread runs.
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe)
    std::string text = value ? value : "";
    unsetenv(name);  // NOLINT(concurrency-mt-unsafe)
    return text;
}

std::optional<long> number(std::string_view text) {
    long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

/// What is wrong with the socket; empty when nothing is.
std::string strangenessOf(int listener) {
    int isListening = 0;
    socklen_t size = sizeof isListening;
    if (getsockopt(listener, SOL_SOCKET, SO_ACCEPTCONN, &isListening, &size) != 0 || isListening == 0)
        return "is not a socket that listens";
    sockaddr_in address{};
    size = sizeof address;
    // The library's own call, whose address type is the one of every family.
    auto* any = reinterpret_cast<sockaddr*>(&address);
    if (getsockname(listener, any, &size) != 0 || address.sin_family != AF_INET ||
        address.sin_addr.s_addr != htonl(INADDR_LOOPBACK))
        return "listens elsewhere than on 127.0.0.1";
    return {};
}

}  // namespace

Result<std::optional<int>> activatedListener() {
    const std::string process = taken("LISTEN_PID");
    const std::string descriptors = taken("LISTEN_FDS");
    taken("LISTEN_FDNAMES");
    if (number(process) != getpid()) return std::nullopt;
    if (number(descriptors) != 1)
        return failure("The service manager hands over \"" + descriptors + "\" sockets, and one is served.");
    if (const std::string strange = strangenessOf(firstDescriptor); !strange.empty())
        return failure("What the service manager hands over " + strange + ".");
    fcntl(firstDescriptor, F_SETFD, FD_CLOEXEC);
    fcntl(firstDescriptor, F_SETFL, fcntl(firstDescriptor, F_GETFL) | O_NONBLOCK);
    return firstDescriptor;
}

void tellReady() {
    const std::string path = taken("NOTIFY_SOCKET");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path) return;
    path.copy(address.sun_path, path.size());
    // A name without a file begins with a zero byte, which is written as "@".
    if (path.front() == '@') address.sun_path[0] = '\0';
    const int channel = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (channel < 0) return;
    constexpr std::string_view ready = "READY=1";
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size());
    // Whoever does not listen does not want to know.
    [[maybe_unused]] const ssize_t sent = sendto(channel, ready.data(), ready.size(), MSG_NOSIGNAL,
                                                 reinterpret_cast<const sockaddr*>(&address), size);
    close(channel);
}

}  // namespace settings::server
