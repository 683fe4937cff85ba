// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "platform/foundation/Value.h"
#include "settings/exploring/FileEdit.h"
#include "settings/recording/MachineAnswers.h"

namespace settings {

/// A row as a step means it: by what it is, so that it is found again in a list that came about otherwise,
/// and where none is like it by its place.
struct MeantRow {
    std::int64_t index = 0;
    std::string name;
    std::string identifier;

    bool operator==(const MeantRow&) const = default;
};

/// One thing that an exploration does to the phone, apart from the numbers and keys that only one life of it
/// has: so the same step can be tried with other steps before it.
struct ExploredStep {
    /// What a command's numbers say of what it means.
    enum class Aim {
        /// The row by its place.
        Place,
        /// The row by its key, and the screen, as they are.
        Present,
        /// A screen that is not there.
        OtherScreen,
        /// A key that no row has.
        OtherKey,
    };
    struct Command {
        platform::Dictionary fields;
        std::optional<MeantRow> row;
        Aim aim = Aim::Place;
    };
    /// Any bytes on the channel.
    struct Line {
        std::string text;
    };
    /// Nothing but that time goes by.
    struct Time {
        std::int64_t milliseconds = 0;
    };
    /// Another process posts.
    struct Notified {
        std::string name;
    };
    /// Another process changes a file. A phone path.
    struct FileChanged {
        std::string path;
        FileEdit edit;
    };
    /// The machine has other calendars, networks and tones from now on.
    struct Machine {
        std::size_t which = 0;
    };

    std::variant<Command, Line, Time, Notified, FileChanged, Machine> what;
};

/// The value of "do"; empty for what is no command.
std::string commandName(const ExploredStep& step);
/// The command as it is sent while the phone shows that state, a dictionary.
platform::Dictionary aimed(const ExploredStep::Command& command, const platform::Value& state);
/// The row that is meant, among those of the state; nil when there is none.
platform::Value meantRow(const MeantRow& row, const platform::Value& state);

/// How many machines there are to choose from; 0 is one with a few of everything.
inline constexpr std::size_t exploredMachines = 4;
MachineAnswers machineAnswers(std::size_t which);

}  // namespace settings
