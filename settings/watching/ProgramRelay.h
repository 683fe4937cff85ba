// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"
#include "settings/watching/Alarm.h"
#include "settings/watching/ServedProgram.h"

namespace settings {

/// Has one program serve at a time on a socket that stays, and another take its place without anybody at the
/// socket being refused. A new one first shows that it can be started and that its bundle can be opened; only
/// then does the old one let go of the screens. Main thread.
///
/// The line between them (ControlLine), in the order of a start:
/// - the program: `{"ready": true, "problem": TEXT|null}`, its first screen is open, or why it is not;
/// - to the program that serves by then: `{"leave": true}`, which answers `{"handover": OBJECT}`, takes no
///   command any more, sends its pages back, and ends;
/// - to the new one: `{"go": {"secret", "handover": OBJECT|null, "pathEnded": TEXT|null, "build": OBJECT}}`;
/// - the program: `{"serving": true}`;
/// - later, to it: `{"build": OBJECT}`, what its state shows as "build".
class ProgramRelay {
  public:
    struct Options {
        /// The program and what it is started with.
        std::vector<std::string> arguments;
        /// A socket that listens; it stays the caller's.
        int listener = -1;
        /// Asked for once, when the root is there.
        std::function<platform::Result<std::string>()> secret;
    };
    /// None of these may destroy the relay.
    struct Events {
        /// A program has begun to serve.
        std::function<void()> serving;
        /// A new program cannot take over; with a sentence why. The one before goes on.
        std::function<void(const std::string&)> refused;
        /// Nobody serves any more; with a sentence why.
        std::function<void(const std::string&)> down;
    };

    ProgramRelay(Options options, Events events);
    /// Ends all programs.
    ~ProgramRelay();
    ProgramRelay(const ProgramRelay&) = delete;
    ProgramRelay& operator=(const ProgramRelay&) = delete;

    /// Starts a program that takes over; one that is about to is given up.
    void renew();
    /// What whoever serves shows from now on.
    void tell(platform::Dictionary build);
    bool isRenewing() const { return successor_ != nullptr; }
    /// Whether the present renewal has got so far that it goes to its end.
    bool isBeyondRecall() const {
        return stage_ == Stage::Asking || stage_ == Stage::Opening || given_.has_value();
    }
    /// Null while nobody serves.
    const ServedProgram* serving() const { return serving_.get(); }
    const std::string& secret() const { return secret_; }

  private:
    enum class Stage { None, Loading, Asking, Opening };

    void startSuccessor();
    void dropSuccessor();
    void heard(std::uint64_t number, const platform::Value& message);
    void ended(std::uint64_t number, const std::string& how);
    void successorReady(const platform::Value& message);
    void successorServes();
    void successorEnded(const std::string& how);
    void servingEnded(const std::string& how);
    void refuse(const std::string& reason);
    void go();
    void late();
    void discard(std::unique_ptr<ServedProgram> program);

    Options options_;
    Events events_;
    std::string secret_;
    platform::Dictionary build_;
    Stage stage_ = Stage::None;
    std::uint64_t lastNumber_ = 0;
    std::unique_ptr<ServedProgram> serving_;
    std::uint64_t servingNumber_ = 0;
    bool servingHasProblem_ = false;
    std::chrono::steady_clock::time_point servingSince_;
    std::unique_ptr<ServedProgram> successor_;
    std::uint64_t successorNumber_ = 0;
    bool successorHasProblem_ = false;
    /// What the program before has given, until one that it was given to serves; nil of one that gave none.
    std::optional<platform::Value> given_;
    /// Why there is nothing to go on from.
    std::optional<std::string> pathEnded_;
    /// Those that have given it and end by themselves.
    std::vector<std::unique_ptr<ServedProgram>> leaving_;
    std::vector<std::unique_ptr<ServedProgram>> discarded_;
    Alarm deadline_{[this] { late(); }};
};

}  // namespace settings
