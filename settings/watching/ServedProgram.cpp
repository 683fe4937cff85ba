// SPDX-License-Identifier: MIT
#include "settings/watching/ServedProgram.h"

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <utility>

#include "platform/foundation/RunLoop.h"

namespace settings {

using platform::Result;
using platform::RunLoop;

Result<std::unique_ptr<ServedProgram>> ServedProgram::start(std::vector<std::string> arguments, int listener,
                                                            Events events) {
    auto ends = ControlLine::make();
    if (!ends)
        return platform::failure("The program could not be started: " + std::string(std::strerror(errno)) +
                                 ".");
    std::unique_ptr<ServedProgram> program(new ServedProgram(std::move(ends->here), std::move(events)));
    auto* const self = program.get();
    program->process_ = std::make_unique<ChildProcess>(
        std::move(arguments),
        std::vector<ChildProcess::Given>{{ends->there.get(), controlDescriptor},
                                         {listener, listenerDescriptor}},
        [self](int status) {
            // What it said last counts.
            self->hear();
            self->unlisten();
            self->events_.ended(ChildProcess::sentenceOf(status));
        });
    if (const auto& started = program->process_->started(); !started) return std::unexpected(started.error());
    program->listen();
    return program;
}

ServedProgram::~ServedProgram() {
    unlisten();
}

void ServedProgram::listen() {
    listens_ = true;
    RunLoop::main().watch(line_.descriptor(), [this] { hear(); });
}

void ServedProgram::unlisten() {
    if (std::exchange(listens_, false)) RunLoop::main().unwatch(line_.descriptor());
}

void ServedProgram::hear() {
    if (line_.hasEnded()) return;
    for (const platform::Value& message : line_.receive()) events_.said(message);
    // Its end is seen by the process itself.
    if (line_.hasEnded()) unlisten();
}

void ServedProgram::endSoon() {
    constexpr std::chrono::seconds patience{5};
    unlisten();
    shutdown(line_.descriptor(), SHUT_RDWR);
    process_->waitForEnd(patience);
}

std::vector<std::string> ServedProgram::loadedFiles() const {
    std::vector<std::string> files;
    std::ifstream maps("/proc/" + std::to_string(id()) + "/maps");
    for (std::string line; std::getline(maps, line);) {
        const auto permissions = line.find(' ');
        const auto path = line.find('/');
        if (path == std::string::npos || permissions + 3 >= line.size() || line[permissions + 3] != 'x')
            continue;
        std::string file = line.substr(path);
        constexpr std::string_view gone = " (deleted)";
        if (file.ends_with(gone)) file.resize(file.size() - gone.size());
        files.push_back(std::move(file));
    }
    std::ranges::sort(files);
    files.erase(std::ranges::unique(files).begin(), files.end());
    return files;
}

}  // namespace settings
