// SPDX-License-Identifier: MIT
#include "settings/channels/Drive.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>
#include <string_view>
#include <utility>

#include "platform/foundation/RunLoop.h"

namespace settings {

using platform::RunLoop;

Drive::Drive(Session& session, int input, int output)
    : Drive(
          [&session](const LineReader::Line& line) -> platform::Result<std::string> {
              return line.oversized ? session.answerToOversizedLine() : session.answer(line.text);
          },
          input, output) {}

Drive::Drive(Answerer answerer, int input, int output)
    : answerer_(std::move(answerer)), input_(input), output_(output) {}

Drive::~Drive() {
    RunLoop::main().unwatch(input_);
}

int Drive::run() {
    // A reader that has gone away is seen by write() instead.
    std::signal(SIGPIPE, SIG_IGN);
    RunLoop::main().watch(input_, [this] { readable(); });
    if (!ended_) RunLoop::main().run();
    return status_;
}

void Drive::readable() {
    if (ended_) return;
    std::array<char, 65536> bytes{};
    const ssize_t count = ::read(input_, bytes.data(), bytes.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
    if (count > 0) {
        answer(reader_.feed(std::string_view(bytes.data(), static_cast<std::size_t>(count))));
        return;
    }
    if (auto last = reader_.finish()) answer({std::move(*last)});
    end(status_);
}

void Drive::answer(const std::vector<LineReader::Line>& lines) {
    for (const LineReader::Line& line : lines) {
        if (ended_) return;
        const platform::Result<std::string> given = answerer_(line);
        if (!given) {
            std::cerr << "quietrix-settings: " << given.error().localizedDescription << '\n';
            return end(1);
        }
        write(*given + "\n");
    }
}

void Drive::write(const std::string& text) {
    for (std::string_view left = text; !left.empty();) {
        const ssize_t count = ::write(output_, left.data(), left.size());
        if (count >= 0) {
            left.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN) {
            pollfd writable{output_, POLLOUT, 0};
            poll(&writable, 1, -1);
        } else if (errno == EPIPE) {
            return end(0);
        } else if (errno != EINTR) {
            std::cerr << "quietrix-settings: The answer could not be written: " << std::strerror(errno)
                      << ".\n";
            return end(1);
        }
    }
}

void Drive::end(int status) {
    ended_ = true;
    status_ = status;
    RunLoop::main().unwatch(input_);
    RunLoop::main().stop();
}

}  // namespace settings
