// SPDX-License-Identifier: MIT
#include "quietrix/Output.h"

#include <unistd.h>

#include <cerrno>
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

/// The error's number, or 0.
int writeWhole(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

}  // namespace

Output::Output(Format format) : format_(format), hasColours_(format == Format::Text && showsColours()) {}

bool Output::write(std::string_view text) {
    const int error = writeWhole(STDOUT_FILENO, text);
    if (error == 0) return true;
    // Who closed the pipe has read enough.
    if (error != EPIPE) {
        hasFailed_ = true;
        note("Standard output cannot be written: " + device::host::message(error) + ".");
    }
    return false;
}

void Output::note(std::string_view sentence) {
    // Where it cannot be written there is nowhere to complain.
    writeWhole(STDERR_FILENO, std::string(programName) + ": " + device::visibleText(sentence) + "\n");
}

void Output::log(const std::string& sentence) {
    if (!isJSON() && logged_.insert(sentence).second) note(sentence);
}

void Output::ask(std::string_view question) {
    writeWhole(STDERR_FILENO, device::visibleText(question));
}

Status Output::print(const Outcome& outcome) {
    if (!outcome) {
        const Refusal& refused = outcome.error();
        if (isJSON()) {
            boost::json::object error{{"error", device::escapedText(refused.message)}};
            if (!refused.candidates.is_null()) error["candidates"] = refused.candidates;
            writeWhole(STDERR_FILENO, jsonText(error) + "\n");
        } else {
            log(refused.message);
        }
        return refused.status;
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
