// SPDX-License-Identifier: MIT
#include "quietrix/Output.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>

#include "device/EscapedText.h"
#include "device/HostFile.h"
#include "quietrix/JSONText.h"

namespace console {

namespace {

constexpr const char* programName = "quietrix";

bool showsColours() {
    // Read before any thread starts, and nothing here ever sets a variable.
    const char* noColour = std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe)
    const char* terminal = std::getenv("TERM");      // NOLINT(concurrency-mt-unsafe)
    const bool isUnwanted = noColour && *noColour;
    const bool isDumb = !terminal || std::string_view(terminal) == "dumb";
    return !isUnwanted && !isDumb && isatty(STDOUT_FILENO) == 1;
}

/// So much goes in at once where the system says that there is room.
constexpr std::size_t pieceSize = PIPE_BUF;

/// Returns when the descriptor takes something, or never will. False when `end` can be read before.
bool waitForRoom(int descriptor, int end) {
    std::array<pollfd, 2> waits{{{descriptor, POLLOUT, 0}, {end, POLLIN, 0}}};
    while (poll(waits.data(), waits.size(), -1) < 0 && errno == EINTR) continue;
    return waits[0].revents != 0 || waits[1].revents == 0;
}

/// The error's number, or 0. The descriptor may be one that does not wait, as other processes share it.
int writeWhole(int descriptor, std::string_view text, int end = -1) {
    while (!text.empty()) {
        if (end >= 0 && !waitForRoom(descriptor, end)) return ECANCELED;
        const std::size_t size = end >= 0 ? std::min(text.size(), pieceSize) : text.size();
        const ssize_t written = ::write(descriptor, text.data(), size);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0 && errno == EAGAIN && waitForRoom(descriptor, end)) continue;
        if (written < 0) return errno;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

}  // namespace

Output::Output(Format format) : format_(format), hasColours_(format == Format::Text && showsColours()) {}

bool Output::write(std::string_view text) {
    const int error = writeWhole(STDOUT_FILENO, text, end_);
    if (error == 0) return true;
    // Who closed the pipe has read enough.
    if (error != EPIPE && error != ECANCELED) {
        hasFailed_ = true;
        complain("Standard output cannot be written: " + device::host::message(error) + ".");
    }
    return false;
}

void Output::complain(const std::string& sentence, const boost::json::value& candidates) {
    if (!isJSON()) return log(sentence);
    boost::json::object error{{"error", device::escapedText(sentence)}};
    if (!candidates.is_null()) error["candidates"] = candidates;
    writeWhole(STDERR_FILENO, jsonText(error) + "\n");
}

void Output::note(std::string_view sentence) {
    // Where it cannot be written there is nowhere to complain.
    writeWhole(STDERR_FILENO, std::string(programName) + ": " + device::visibleText(sentence) + "\n");
}

void Output::log(const std::string& sentence) {
    if (!isJSON() && !isLogSilent_ && logged_.insert(sentence).second) note(sentence);
}

void Output::ask(std::string_view question) {
    writeWhole(STDERR_FILENO, device::visibleText(question));
}

Status Output::print(const Outcome& outcome) {
    if (!outcome) {
        complain(outcome.error().message, outcome.error().candidates);
        return outcome.error().status;
    }
    if (!outcome->note.empty() && !isJSON()) note(outcome->note);
    if (isJSON() && !outcome->isData) {
        write(jsonText(outcome->json) + "\n");
    } else if (!outcome->text.empty()) {
        write(outcome->text);
    }
    return hasFailed_ ? Status::Failed : outcome->status;
}

std::string Output::coloured(Colour colour, std::string text) const {
    if (!hasColours_) return text;
    const char* code = colour == Colour::Dim      ? "2"
                       : colour == Colour::Green  ? "32"
                       : colour == Colour::Yellow ? "33"
                                                  : "31";
    return "\x1b[" + std::string(code) + "m" + text + "\x1b[0m";
}

}  // namespace console
