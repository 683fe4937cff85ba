// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "settings/exploring/ExploredPhone.h"

namespace settings {

/// What broke something that must always hold, as short as it was made.
struct ExploredFailure {
    /// How often a round is done.
    static constexpr std::size_t rounds = 40;

    Breach breach;
    /// The number of the step at which it was found, from 1.
    std::uint64_t step = 0;
    /// How long it was then.
    std::size_t stepsBefore = 0;
    std::vector<ExploredStep> script;
    /// What is done over and over after that; empty but for memory that grows.
    std::vector<ExploredStep> round;
    /// The shortened script as a phone has lived it.
    std::vector<RecordedStep> recorded;
    /// False for what did not happen again, or otherwise, when the same was done once more: then the script
    /// is the whole one.
    bool isRepeatable = true;
};

/// What an exploration came to.
struct ExplorationOutcome {
    std::uint64_t steps = 0;
    std::uint64_t lives = 0;
    std::map<std::string, unsigned> screens;
    std::optional<ExploredFailure> failure;
};

/// What goes on.
enum class Exploring { Steps, Shortening };

struct ExplorationOptions {
    std::uint64_t steps = 0;
    std::uint64_t seed = 0;
    /// Told how many steps, or tries of shortening, there were so far; may be empty.
    std::function<void(Exploring what, std::uint64_t done)> progress;
    /// Gets each step as a line of a recording without its answer; may be null.
    std::ostream* trace = nullptr;
};

/// Uses phones at random, one after another, until something that must always hold is broken, which is then
/// made as short as possible. What it does follows from the seed. The error is why it cannot begin or go on.
/// Main thread.
platform::Result<ExplorationOutcome> explore(const ExploredBeginning& beginning,
                                             const ExplorationOptions& options);

}  // namespace settings
