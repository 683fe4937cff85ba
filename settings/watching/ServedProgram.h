// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"
#include "settings/watching/ChildProcess.h"
#include "settings/watching/ControlLine.h"

namespace settings {

/// A program that serves, or is about to, on a socket that it shares with the watcher. It ends when its line
/// to the watcher does, with this object at the latest. Main thread.
class ServedProgram {
  public:
    struct Events {
        std::function<void(const platform::Value&)> said;
        /// How it ended, as ChildProcess::sentenceOf() tells it. Neither may destroy the program.
        std::function<void(const std::string&)> ended;
    };

    /// The numbers under which it has them.
    static constexpr int controlDescriptor = 3;
    static constexpr int listenerDescriptor = 4;

    static platform::Result<std::unique_ptr<ServedProgram>> start(std::vector<std::string> arguments,
                                                                  int listener, Events events);
    ~ServedProgram();
    ServedProgram(const ServedProgram&) = delete;
    ServedProgram& operator=(const ServedProgram&) = delete;

    void say(const platform::Dictionary& message) { line_.send(message); }
    /// Asks it to end, by its line, and waits for that a while.
    void endSoon();
    pid_t id() const { return process_->id(); }
    bool isRunning() const { return process_->isRunning(); }
    /// The files that it has loaded code from. Host paths.
    std::vector<std::string> loadedFiles() const;

  private:
    ServedProgram(device::Descriptor line, Events events)
        : line_(std::move(line)), events_(std::move(events)) {}
    void listen();
    void hear();
    void unlisten();

    ControlLine line_;
    Events events_;
    bool listens_ = false;
    std::unique_ptr<ChildProcess> process_;
};

}  // namespace settings
