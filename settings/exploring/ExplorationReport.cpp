// SPDX-License-Identifier: MIT
#include "settings/exploring/ExplorationReport.h"

#include <algorithm>
#include <vector>

#include "settings/channels/JSON.h"

namespace settings {

using platform::Array;
using platform::Dictionary;

namespace {

/// A long text or a whole file is nothing to read.
constexpr std::size_t longestLine = 300;
/// The start, and the first look.
constexpr std::size_t beginningSteps = 2;

std::string lineOf(const RecordedStep& step) {
    using Step = RecordedStep;
    std::string line;
    if (const auto* command = std::get_if<Step::Command>(&step.what)) {
        line = command->line;
    } else if (const auto* notified = std::get_if<Step::Notified>(&step.what)) {
        line = "(another process posts \"" + notified->name + "\")";
    } else if (const auto* file = std::get_if<Step::FileChanged>(&step.what)) {
        line =
            "(another process " +
            (file->bytes ? "writes " + std::to_string(file->bytes->size()) + " bytes to \"" : "removes \"") +
            file->path + "\")";
    } else if (std::holds_alternative<Step::TimePassed>(step.what)) {
        line = "(time goes on to " + std::to_string(step.time) + " ms)";
    } else if (std::holds_alternative<Step::Begun>(step.what)) {
        line = "(the application is started)";
    } else {
        line = "(the channel is closed)";
    }
    if (line.size() <= longestLine) return line;
    std::size_t end = longestLine;
    while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0U) == 0x80U) --end;
    return line.substr(0, end) + "…";
}

/// Of what is done over and over only the last time.
std::vector<std::string> linesOf(const ExploredFailure& failure) {
    const auto& recorded = failure.recorded;
    std::vector<std::string> lines;
    const std::size_t begin = std::min(beginningSteps, recorded.size() - 1);
    const std::size_t once = failure.round.size();
    const std::size_t rounds = std::min(once * ExploredFailure::rounds, recorded.size() - begin);
    for (std::size_t i = begin; i < recorded.size() - rounds; ++i) lines.push_back(lineOf(recorded[i]));
    if (once > 0) lines.push_back(std::to_string(ExploredFailure::rounds) + " times:");
    for (std::size_t i = recorded.size() - std::min(once, rounds); i < recorded.size(); ++i)
        lines.push_back(lineOf(recorded[i]));
    return lines;
}

std::string counted(std::uint64_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

std::string recordingOf(const RecordingStart& start, const ExploredFailure& failure) {
    std::string text = lineText(start) + "\n";
    for (const RecordedStep& step : failure.recorded) text += lineText(step) + "\n";
    if (!failure.recorded.empty() && !failure.recorded.back().died) {
        RecordedStep end;
        end.time = failure.recorded.back().time;
        end.what = RecordedStep::Ended();
        text += lineText(end) + "\n";
    }
    return text;
}

std::string explorationForPeople(const ExplorationOutcome& outcome, std::uint64_t seed,
                                 const std::string& recording) {
    std::string text;
    if (outcome.failure) {
        const ExploredFailure& failure = *outcome.failure;
        text += failure.breach.text + " [" + failure.breach.invariant + "]\n\n";
        for (const std::string& line : linesOf(failure)) text += "  " + line + "\n";
        text += "\nFound at step " + std::to_string(failure.step);
        text += failure.isRepeatable
                    ? "; " + counted(failure.stepsBefore, "step") + " of that phone were shortened to " +
                          std::to_string(failure.script.size() + failure.round.size()) + "."
                    : "; the same once more did not lead there, so nothing was shortened.";
        text += "\nSee it again: quietrix-settings replay \"" + recording + "\"\n\n";
    }
    return text + (outcome.failure ? "1 failure" : "Nothing found") + " in " +
           counted(outcome.steps, "step") + " on " + counted(outcome.screens.size(), "screen") + ", " +
           counted(outcome.lives, "phone") + ", seed " + std::to_string(seed) + ".\n";
}

std::string explorationAsJSON(const ExplorationOutcome& outcome, std::uint64_t seed,
                              const std::string& recording) {
    Dictionary screens;
    for (const auto& [name, count] : outcome.screens) screens[name] = count;
    Dictionary report{{"seed", seed},
                      {"steps", outcome.steps},
                      {"lives", outcome.lives},
                      {"screens", std::move(screens)},
                      {"failure", nullptr}};
    if (outcome.failure) {
        const ExploredFailure& failure = *outcome.failure;
        Array commands;
        for (const std::string& line : linesOf(failure)) commands.emplace_back(line);
        report["failure"] =
            Dictionary{{"invariant", failure.breach.invariant}, {"subject", failure.breach.subject},
                       {"text", failure.breach.text},           {"step", failure.step},
                       {"stepsBefore", failure.stepsBefore},    {"isRepeatable", failure.isRepeatable},
                       {"commands", std::move(commands)},       {"recording", recording}};
    }
    return jsonText(report) + "\n";
}

}  // namespace settings
