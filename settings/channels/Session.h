// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "settings/application/Application.h"
#include "settings/commands/CommandFields.h"
#include "settings/commands/Refusal.h"
#include "settings/state/StateWriter.h"

namespace settings {

/// One who sees the screen and acts on it, whatever channel carries the lines. Each session has its own row
/// window and its own place in the events. Main thread, and never from within a task of the run loop.
class Session {
  public:
    /// Longer lines are no commands.
    static constexpr std::size_t maximumLineLength = std::size_t{1} << 20;

    /// Far beyond anybody's patience, and well within what a duration holds.
    static constexpr std::chrono::seconds veryLong{1'000'000};

    /// By which a "wait" is timed. Not the phone's clock, which may stand still.
    using Time = std::function<std::chrono::steady_clock::time_point()>;

    /// The application must outlive the session. No "wait" lasts longer than `longestWait`.
    explicit Session(Application& application, std::chrono::milliseconds longestWait = veryLong,
                     Time time = std::chrono::steady_clock::now)
        : application_(application),
          writer_(application),
          longestWait_(longestWait),
          time_(std::move(time)),
          reader_{application.newConnection()} {}

    /// Does what the line says, runs the main loop until nothing is left to do now, and gives the answer: one
    /// line of JSON without its line break. A line that is no command is answered too. A "wait" is waited
    /// for.
    std::string answer(std::string_view line);
    /// The same, but for a "wait" whose event is still to come: that gives nothing, and its answer comes from
    /// resume(), before which no other line may be begun.
    std::optional<std::string> begin(std::string_view line);
    /// The answer of the "wait" that was begun, once its event has come or its time is over; nothing until
    /// then. Runs the main loop as answer() does.
    std::optional<std::string> resume();
    bool isWaiting() const { return waiting_.has_value(); }
    /// When the "wait" that was begun ends in vain; nothing when none was.
    std::optional<std::chrono::steady_clock::time_point> waitsUntil() const;
    /// The answer to a line of more than maximumLineLength bytes that the channel did not keep.
    std::string answerToOversizedLine();
    /// The state as it has become by itself; empty when nothing has changed since the last answer or push,
    /// and until the session has asked for something.
    std::optional<std::string> push();

  private:
    enum class Acted { No, Yes };
    /// What the session sees, beside the events since `eventsFrom_`.
    struct Look {
        std::string body;
        platform::Dictionary device;
        std::size_t hash;
        EventLog::Slice events;
    };

    /// A "wait" that is not over.
    struct Wait {
        /// What its answer has beside "ok" and the state.
        platform::Dictionary head;
        std::string kind;
        std::optional<std::string> name;
        std::chrono::steady_clock::time_point deadline;
        /// The first event that was not looked at yet.
        EventLog::Place from;
        /// What the command says of itself to the journal.
        platform::Value cause;
    };

    /// Puts into `head` what the answer has beside "ok" and the state.
    Outcome<Acted> execute(const platform::Result<CommandFields>& command, platform::Dictionary& head);
    /// Takes over what the session wants to be told from now on. Its window is what the fields say of one,
    /// and `window` where they say nothing.
    platform::Result<void> takeWishes(const CommandFields& fields, RowWindow window);
    Outcome<platform::Dictionary> beginWait(const CommandFields& fields);
    std::string answerText(platform::Dictionary head, const Outcome<Acted>& done);
    Look look();
    /// The whole state as JSON; the session has seen it then.
    std::string stateText(Look look, Acted acted);

    Application& application_;
    StateWriter writer_;
    std::chrono::milliseconds longestWait_;
    Time time_;
    std::optional<Wait> waiting_;
    RowWindow window_;
    bool windowMoved_ = false;
    bool tellsEvents_ = true;
    EventLog::Reader reader_;
    /// How many commands have come.
    std::uint64_t commands_ = 0;
    /// The window for the answer should the command bring another screen on top.
    std::optional<RowWindow> elsewhere_;
    /// The number of the screen that was on top when the command came.
    std::optional<std::uint64_t> screenBefore_;
    bool hasAnswered_ = false;
    std::optional<std::size_t> seenHash_;
    std::uint64_t seenRevision_ = 0;
    /// The first event that no answer and no push has held.
    EventLog::Place eventsFrom_;
    /// The first event since the last answer, which "wait" may have been sent for.
    EventLog::Place answeredUpTo_;
};

}  // namespace settings
