// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "device/Descriptor.h"
#include "platform/foundation/Error.h"

namespace settings {

/// A program that this one has started, in a process group of its own, so that what a terminal sends to this
/// program does not reach it. It goes with this object. Main thread.
class ChildProcess {
  public:
    /// A descriptor of ours, and the number under which the program has it.
    using Given = std::pair<int, int>;

    /// The first argument is the program, looked for as a shell would. Beside what is given it has standard
    /// error, and nothing to read. `ended` is called once, from the main run loop, with a status as of
    /// waitpid(), and may not destroy this object.
    ChildProcess(std::vector<std::string> arguments, std::vector<Given> given,
                 std::function<void(int)> ended);
    /// Ends the whole group.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Why it could not be started; such a one never ends.
    const platform::Result<void>& started() const { return started_; }
    pid_t id() const { return id_; }
    bool isRunning() const { return static_cast<bool>(process_); }
    /// To the whole group. Nothing happens once the program has ended.
    void signal(int number) const;
    /// Waits so long at most; whether it has ended by then. `ended` is not called any more then.
    bool waitForEnd(std::chrono::milliseconds atMost);

    /// "ended with status 1", "was ended by signal 11 (Segmentation fault)".
    static std::string sentenceOf(int status);

  private:
    void start(std::vector<std::string> arguments, std::vector<Given> given);
    void reap();

    platform::Result<void> started_;
    std::function<void(int)> ended_;
    pid_t id_ = 0;
    device::Descriptor process_;
};

}  // namespace settings
