// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "device/Descriptor.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"
#include "settings/channels/LineReader.h"
#include "settings/recording/RecordedRoot.h"
#include "settings/recording/Recording.h"

namespace settings {

/// What runs in the child: a phone made from that start on that root, which talks as PhoneHost does until the
/// socket is closed. Gives the process's exit status.
using PhoneLife =
    std::function<int(const RecordingStart& start, const std::string& rootDirectory, int socket)>;

/// How a phone's process came to its end when it should not have.
struct PhoneDeath {
    /// "signal 6 (Aborted)", "exit status 1", or noAnswer.
    std::string how;
    /// What it said on standard error that tells why; may be empty.
    std::string said;
};

/// A phone in a process of its own, on a temporary root of its own; both go with this object. Main thread,
/// while there is no other one.
class ChildPhone {
  public:
    /// The error says why no process could be had.
    static platform::Result<ChildPhone> begin(const RecordingStart& start, const PhoneLife& life);
    ChildPhone(ChildPhone&& other) noexcept = default;
    ChildPhone& operator=(ChildPhone&& other) = delete;
    ~ChildPhone();

    /// What PhoneHost says to the step, or how the process died of it. A process that says nothing for so
    /// long is killed; so it is when the program is interrupted, which counts as a death too.
    std::variant<platform::Dictionary, PhoneDeath> send(const RecordedStep& step,
                                                        std::chrono::seconds patience);
    /// Has the process end by itself. Empty when all was well: a sanitizer may have found something then.
    std::optional<PhoneDeath> end(std::chrono::seconds patience);

    const std::string& rootDirectory() const { return root_.path(); }

  private:
    /// The process's number, which is nobody's any more after it was waited for.
    struct Process {
        explicit Process(pid_t number) : id(number) {}
        Process(Process&& other) noexcept : id(std::exchange(other.id, -1)) {}
        Process& operator=(Process&&) = delete;
        pid_t id;
    };

    ChildPhone(TemporaryRoot root, pid_t process, device::Descriptor socket, device::Descriptor errors);
    /// Empty when the socket was closed, or the time is over.
    std::optional<std::string> receive(std::chrono::steady_clock::time_point deadline);
    void kill();
    /// After the process has ended: how.
    PhoneDeath takeLeave();
    std::string said() const;

    TemporaryRoot root_;
    Process process_;
    device::Descriptor socket_;
    /// A file in memory that takes the process's standard error.
    device::Descriptor errors_;
    LineReader cutter_;
    std::deque<std::string> lines_;
};

}  // namespace settings
