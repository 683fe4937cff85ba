// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"
#include "settings/recording/MachineAnswers.h"

namespace settings {

/// How a recording begins: all that the phone was made from.
struct RecordingStart {
    static constexpr std::string_view format = "quietrix-recording";
    static constexpr int version = 1;

    /// The version of the program that recorded.
    std::string program;
    /// "KEY=VALUE" as on the command line; every key that has a value, and what was made up for the root.
    std::vector<std::string> device;
    std::uint32_t seed = 0;
    /// The machine's local time, to the millisecond: "2026-11-20T09:00:00.125".
    std::string clock;
    /// The time zone of that machine, as the variable TZ has it.
    std::string zone;
    /// The name of the bundle's directory.
    std::string bundle;
    /// The root's files, by their phone paths.
    std::map<std::string, platform::Data> files;

    bool operator==(const RecordingStart&) const = default;
};

/// How a program is said to have died that had to be killed, since it went on for so long: "no answer within
/// 20 s"; and how long that was, empty for another text.
inline constexpr std::string_view noAnswer = "no answer";
std::string noAnswerWithin(std::chrono::seconds patience);
std::optional<std::chrono::seconds> hangOf(std::string_view died);

/// One thing that came to the phone.
struct RecordedStep {
    /// The application was started.
    struct Begun {
        bool operator==(const Begun&) const = default;
    };
    /// A line of the channel; its bytes, which need not be text.
    struct Command {
        std::string line;
        bool operator==(const Command&) const = default;
    };
    /// A line that the channel did not keep.
    struct OversizedLine {
        bool operator==(const OversizedLine&) const = default;
    };
    /// What the command before has waited for, in vain or not, was over.
    struct WaitOver {
        bool operator==(const WaitOver&) const = default;
    };
    /// Nothing but that time went by.
    struct TimePassed {
        bool operator==(const TimePassed&) const = default;
    };
    /// Another process has posted a system-wide notification.
    struct Notified {
        std::string name;
        bool operator==(const Notified&) const = default;
    };
    /// Another process has written or removed a file. A phone path.
    struct FileChanged {
        std::string path;
        /// Empty for one that is gone.
        std::optional<platform::Data> bytes;
        bool operator==(const FileChanged&) const = default;
    };
    /// The channel was closed.
    struct Ended {
        bool operator==(const Ended&) const = default;
    };

    /// In milliseconds since the start.
    std::int64_t time = 0;
    std::variant<Begun, Command, OversizedLine, WaitOver, TimePassed, Notified, FileChanged, Ended> what;
    MachineAnswers found;
    /// As JSON. Empty for what has no answer, and for a command whose answer is still to come.
    std::optional<std::string> answer;
    /// How the program died of it instead of answering, "signal 6 (Aborted)". Known only where somebody has
    /// watched it from outside; empty for one that has lived on.
    std::optional<std::string> died{};

    bool operator==(const RecordedStep&) const = default;
};

/// A step as it was read: its answer is not text but what that holds, and nil where there is none.
struct ReadStep {
    RecordedStep step;
    platform::Value answer;
};

/// A recording's first line, and another one, without the line break.
std::string lineText(const RecordingStart& start);
std::string lineText(const RecordedStep& step);

/// Read such a line. Any bytes may come; the error is a sentence that says what is wrong with the line.
platform::Result<RecordingStart> parseRecordingStart(std::string_view line);
platform::Result<ReadStep> readRecordedStep(std::string_view line);
platform::Result<RecordedStep> parseRecordedStep(std::string_view line);

/// How deep a recorded answer may nest: a stored property list within it may go deeper than a command.
inline constexpr std::size_t recordedJSONDepth = 600;

}  // namespace settings
