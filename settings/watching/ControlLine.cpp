// SPDX-License-Identifier: MIT
#include "settings/watching/ControlLine.h"

#include <sys/socket.h>
#include <sys/time.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "settings/channels/JSON.h"

namespace settings {

using platform::Value;

namespace {

/// Who takes nothing for so long hangs.
constexpr timeval patience{10, 0};

}  // namespace

std::optional<ControlLine::Ends> ControlLine::make() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return std::nullopt;
    return Ends{device::Descriptor(ends[0]), device::Descriptor(ends[1])};
}

ControlLine::ControlLine(device::Descriptor socket) : socket_(std::move(socket)) {
    setsockopt(socket_.get(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
}

bool ControlLine::send(const platform::Dictionary& message) {
    const std::string line = jsonText(message) + "\n";
    for (std::string_view rest = line; !rest.empty();) {
        const ssize_t count = ::send(socket_.get(), rest.data(), rest.size(), MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        rest.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void ControlLine::readSome(int flags) {
    std::array<char, 65536> bytes{};
    const ssize_t count = recv(socket_.get(), bytes.data(), bytes.size(), flags);
    if (count > 0) received_.append(bytes.data(), static_cast<std::size_t>(count));
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) hasEnded_ = true;
}

std::optional<Value> ControlLine::takeLine() {
    for (;;) {
        const auto end = received_.find('\n');
        if (end == std::string::npos) return std::nullopt;
        auto message = parseJSON(std::string_view(received_).substr(0, end));
        received_.erase(0, end + 1);
        if (message && message->dictionary() != nullptr) return *std::move(message);
    }
}

std::vector<Value> ControlLine::receive() {
    readSome(MSG_DONTWAIT);
    std::vector<Value> messages;
    while (auto message = takeLine()) messages.push_back(*std::move(message));
    return messages;
}

std::optional<Value> ControlLine::wait() {
    for (;;) {
        if (auto message = takeLine()) return message;
        if (hasEnded_) return std::nullopt;
        readSome(0);
    }
}

}  // namespace settings
