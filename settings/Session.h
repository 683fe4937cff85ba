// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "settings/Application.h"
#include "settings/CommandFields.h"
#include "settings/Refusal.h"
#include "settings/StateWriter.h"

namespace settings {

/// One who sees the screen and acts on it, whatever channel carries the lines. Each session has its own row
/// window and its own place in the events. Main thread, and never from within a task of the run loop.
class Session {
  public:
    /// Longer lines are no commands.
    static constexpr std::size_t maximumLineLength = std::size_t{1} << 20;

    /// The application must outlive the session.
    explicit Session(Application& application) : application_(application), writer_(application) {}

    /// Does what the line says, runs the main loop until nothing is left to do now, and gives the answer: one
    /// line of JSON without its line break. A line that is no command is answered too.
    std::string answer(std::string_view line);
    /// The answer to a line of more than maximumLineLength bytes that the channel did not keep.
    std::string answerToOversizedLine();
    /// The state as it has become by itself; empty when nothing has changed since the last answer or push,
    /// and until the session has asked for something.
    std::optional<std::string> push();

    /// Asked while a "wait" waits; when it answers true, the wait ends in vain.
    void setInterruption(std::function<bool()> interrupted) { interrupted_ = std::move(interrupted); }

  private:
    enum class Acted { No, Yes };
    /// What the session sees, beside the events since `eventsFrom_`.
    struct Look {
        std::string body;
        std::size_t hash;
        EventLog::Slice events;
    };

    Outcome<Acted> execute(std::string_view line, platform::Value& id);
    /// Takes over what the session wants to be told from now on.
    platform::Result<void> takeWishes(const CommandFields& fields);
    platform::Result<void> wait(const CommandFields& fields);
    std::string answerText(const platform::Value& id, const Outcome<Acted>& done);
    Look look();
    /// The whole state as JSON; the session has seen it then.
    std::string stateText(Look look, Acted acted);

    Application& application_;
    StateWriter writer_;
    std::function<bool()> interrupted_;
    RowWindow window_;
    bool windowMoved_ = false;
    bool tellsEvents_ = true;
    bool hasAnswered_ = false;
    std::optional<std::size_t> seenHash_;
    std::uint64_t seenRevision_ = 0;
    /// The first event that no answer and no push has held.
    std::uint64_t eventsFrom_ = 0;
    /// The first event since the last answer, which "wait" may have been sent for.
    std::uint64_t answeredUpTo_ = 0;
};

}  // namespace settings
