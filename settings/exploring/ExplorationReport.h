// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "settings/exploring/Exploration.h"

namespace settings {

/// A recording of how the failure came about, which "replay" takes.
std::string recordingOf(const RecordingStart& start, const ExploredFailure& failure);

/// What an exploration came to, for people: one line, and of a failure what was broken, the steps that lead
/// there and how to see it again. `recording` is the file that they were written to.
std::string explorationForPeople(const ExplorationOutcome& outcome, std::uint64_t seed,
                                 const std::string& recording);
/// One object: "seed", "steps", "lives", "screens", and "failure", which is null or has "invariant",
/// "subject", "text", "step", "stepsBefore", "isRepeatable", "commands" and "recording".
std::string explorationAsJSON(const ExplorationOutcome& outcome, std::uint64_t seed,
                              const std::string& recording);

}  // namespace settings
