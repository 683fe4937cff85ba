// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "device/Descriptor.h"
#include "platform/foundation/Processes.h"

namespace device {

/// The phone's system shell: a child process of this one, which is started with this object, started again
/// whenever it ends, and ended with this object or with the whole process, however that ends. Killing by name
/// reaches this child alone, through its own descriptor. Its starts and ends are written to the journal
/// ("process"), a start ahead of everything that the new one does.
///
/// The program is started as `PROGRAM ROOT`, with "--restarted" behind that when it was there before. It
/// writes a line to its standard output when it is ready, and ends at the end of its standard input.
///
/// Everything happens on the main run loop, which waits for the child as for any descriptor, by the
/// machine's own time. A start counts as work in flight until the shell is ready, for `Pace::patience` at
/// most. Main thread.
class SystemShell : public platform::Processes {
  public:
    static constexpr std::string_view name = "SpringBoard";

    /// How it is started again.
    struct Pace {
        /// Ending sooner than this by itself is ending at once. A shell that was ready and was ended by
        /// another process has not ended by itself.
        std::chrono::milliseconds steady{1000};
        /// The pause after the first end at once, and after each end by another process within that time;
        /// each further end at once in a row doubles it.
        std::chrono::milliseconds firstPause{100};
        /// So many ends at once in a row, and it stays down.
        int limit = 6;
        std::chrono::milliseconds patience{2000};
    };

    /// Host paths. A program that cannot be started is told in one log line, and there is no shell then,
    /// until it is killed by its name: who asks for that wants a new one.
    SystemShell(std::string program, std::string rootDirectory)
        : SystemShell(std::move(program), std::move(rootDirectory), Pace()) {}
    SystemShell(std::string program, std::string rootDirectory, Pace pace);
    ~SystemShell() override;
    SystemShell(const SystemShell&) = delete;
    SystemShell& operator=(const SystemShell&) = delete;

    bool killProcessByName(std::string_view process) override;
    /// The pause after so many ends at once in a row, at least one.
    static std::chrono::milliseconds pauseAfter(const Pace& pace, int endsAtOnce) {
        return pace.firstPause * (1 << (endsAtOnce - 1));
    }
    /// Why the very first start could not be made, where that is for want of descriptors, processes or
    /// memory: then nothing else will be had either. It is told by whoever asks for this, not in the log.
    const std::optional<std::string>& shortage() const { return shortage_; }
    /// The present child's; empty while there is none.
    std::optional<pid_t> processId() const;

  private:
    using Instant = std::chrono::steady_clock::time_point;
    struct Child {
        pid_t id = 0;
        Descriptor process;
        /// Its standard input: closing it is the sign to end.
        Descriptor input;
        Descriptor output;
        Instant start;
        bool isReady = false;
        bool isKilled = false;
    };

    void start();
    void startAnew();
    int spawn();
    void afterSpawn(int error);
    std::string couldNotRun() const;
    void readOutput();
    void reap();
    void startAfter(std::chrono::milliseconds pause);
    static bool isEndedByOthers(const Child& child, int status);
    void giveUp(const std::string& reason);
    bool isInFlight() const;

    std::string program_;
    std::string rootDirectory_;
    Pace pace_;
    std::optional<Child> child_;
    /// Set while there is a pause before the next start.
    Descriptor timer_;
    bool hasRun_ = false;
    std::optional<std::string> shortage_;
    int endsAtOnce_ = 0;
    Instant inFlightUntil_;
    std::uint64_t pendingCheck_ = 0;
};

}  // namespace device
