// SPDX-License-Identifier: MIT
#include "settings/exploring/Exploration.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <utility>

#include "device/Interruption.h"
#include "settings/exploring/Chance.h"
#include "settings/exploring/Shrinking.h"

namespace settings {

using platform::failure;
using platform::Result;
using platform::Value;

namespace {

/// A phone's life: long enough to get anywhere, short enough that what breaks something is soon found among
/// its steps.
constexpr std::uint64_t stepsOfLife = 250;
/// What is done over and over at a life's end, to see whether memory grows.
constexpr std::size_t pressesOfRound = 4;
/// The first rounds fill what is made once; whoever does not grow then is not looked at any longer.
constexpr std::size_t firstRounds = 7;
/// Whoever grows in each of these last stretches grows for ever; what is only filled now and then does not.
constexpr std::size_t roundsOfStretch = 5;
constexpr std::size_t growingStretches = 5;
constexpr std::size_t growingRounds = growingStretches * roundsOfStretch;
/// A shortening takes no more tries than this.
constexpr std::size_t mostTries = 3000;
constexpr std::chrono::seconds shortestPatience{2};

/// What a round left behind.
struct RoundEnd {
    std::int64_t memory = 0;
    std::int64_t stored = 0;
    Value count;
    Value stack;
};

/// Whether memory has grown in each of the last stretches of rounds although the phone is as it was. Within a
/// stretch it may shrink: what is made larger by doubling gives back what it had before.
bool growsSteadily(const std::vector<RoundEnd>& ends, std::size_t stretches) {
    if (ends.size() <= stretches * roundsOfStretch) return false;
    const RoundEnd& last = ends.back();
    for (std::size_t back = 0; back < stretches * roundsOfStretch; ++back) {
        const RoundEnd& each = ends[ends.size() - 1 - back];
        if (each.stored != last.stored || each.count != last.count || each.stack != last.stack) return false;
        if (back % roundsOfStretch == 0 &&
            each.memory <= ends[ends.size() - 1 - back - roundsOfStretch].memory)
            return false;
    }
    return true;
}

ExploredStep command(platform::Dictionary fields) {
    return {ExploredStep::Command{std::move(fields), std::nullopt}};
}

/// Nothing waits any more, the phone is well, and the bundle's first screen is open.
std::vector<ExploredStep> roundBeginning() {
    // The second moves a clock that stands still otherwise, and is refused by any other.
    return {{ExploredStep::Time{ExploredPhone::restMilliseconds}},
            command({{"do", "advance"}, {"seconds", ExploredPhone::restMilliseconds / 1000}}),
            command({{"do", "fault"}, {"clear", true}}),
            command({{"do", "open"}})};
}

Result<std::optional<Breach>> performAll(ExploredPhone& phone, const std::vector<ExploredStep>& steps) {
    for (const ExploredStep& step : steps) {
        auto breach = phone.perform(step);
        if (!breach || *breach) return breach;
    }
    return std::nullopt;
}

/// Does the same over and over, and looks whether memory grows.
Result<std::optional<Breach>> performRounds(ExploredPhone& phone, const std::vector<ExploredStep>& round) {
    std::vector<RoundEnd> ends;
    while (ends.size() < ExploredFailure::rounds) {
        auto breach = performAll(phone, round);
        if (!breach || *breach) return breach;
        const Value screen = phone.state()["screen"];
        ends.push_back({phone.memory(), phone.stored(), screen["count"], screen["stack"]});
        if (ends.size() == firstRounds && !growsSteadily(ends, 1)) return std::nullopt;
    }
    if (!growsSteadily(ends, growingStretches)) return std::nullopt;
    const auto grown = ends.back().memory - ends[ends.size() - 1 - growingRounds].memory;
    return Breach{"memoryGrows", "",
                  "The same presses take " +
                      std::to_string(grown / static_cast<std::int64_t>(growingRounds)) +
                      " bytes more each time, and leave the phone as it was."};
}

class Exploration {
  public:
    Exploration(const ExploredBeginning& beginning, const ExplorationOptions& options)
        : beginning_(beginning), options_(options), chance_(options.seed), choice_(chance_) {}

    Result<ExplorationOutcome> run() {
        while (outcome_.steps < options_.steps && !outcome_.failure) {
            if (const Result<void> lived = live(); !lived) return std::unexpected(lived.error());
        }
        outcome_.screens = choice_.screens();
        return std::move(outcome_);
    }

  private:
    using Script = std::vector<ExploredStep>;

    Result<void> live() {
        ++outcome_.lives;
        Script script;
        Script round;
        auto phone = ExploredPhone::begin(beginning_);
        if (!phone) return std::unexpected(phone.error());
        if (const auto opened = checkOpened(*phone); !opened) return opened;
        choice_.beginPhone();
        auto breach = Result<std::optional<Breach>>(phone->breach());
        const std::uint64_t end = std::min(options_.steps, outcome_.steps + stepsOfLife);
        while (breach && !*breach && outcome_.steps < end) {
            script.push_back(choice_.next(phone->state(), phone->known()));
            breach = perform(*phone, script.back());
        }
        if (breach && !*breach) breach = tryRounds(*phone, round);
        if (breach && !*breach) {
            round.clear();
            breach = phone->end();
        }
        if (!breach) return std::unexpected(breach.error());
        if (*breach) fail(**breach, std::move(script), std::move(round), phone->recorded());
        return {};
    }

    static Result<void> checkOpened(const ExploredPhone& phone) {
        const Value screen = phone.state()["screen"];
        if (screen["class"] != Value("BundleErrorController")) return {};
        const platform::Array* rows = screen["rows"].array();
        return failure(rows && !rows->empty() ? (*rows)[0]["properties"]["footerText"].stringOr()
                                              : "The bundle cannot be opened.");
    }

    Result<std::optional<Breach>> perform(ExploredPhone& phone, const ExploredStep& step) {
        ++outcome_.steps;
        if (options_.progress) options_.progress(Exploring::Steps, outcome_.steps);
        const std::size_t before = phone.recorded().size();
        auto breach = phone.perform(step);
        if (options_.trace) {
            for (std::size_t i = before; i < phone.recorded().size(); ++i) {
                RecordedStep bare = phone.recorded()[i];
                bare.answer.reset();
                *options_.trace << lineText(bare) << '\n';
            }
        }
        choice_.noteState(phone.state());
        return breach;
    }

    /// A round is chosen while it is done for the first time, from the bundle's first screen on.
    Result<std::optional<Breach>> tryRounds(ExploredPhone& phone, Script& round) {
        round = roundBeginning();
        auto breach = performAll(phone, round);
        for (std::size_t i = 0; breach && !*breach && i < pressesOfRound; ++i) {
            round.push_back(choice_.press(phone.state()));
            breach = perform(phone, round.back());
        }
        if (!breach || *breach) return breach;
        return performRounds(phone, round);
    }

    void fail(Breach breach, Script script, Script round, const std::vector<RecordedStep>& recorded) {
        ExploredFailure found;
        found.breach = std::move(breach);
        found.step = outcome_.steps;
        found.script = std::move(script);
        found.round = std::move(round);
        // Rounds are what memory grows with; to anything else they are steps like all others.
        if (found.breach.invariant != "memoryGrows") {
            for (std::size_t i = 0; i < firstRounds; ++i)
                found.script.insert(found.script.end(), found.round.begin(), found.round.end());
            found.round.clear();
        }
        found.stepsBefore = found.script.size();
        found.recorded = recorded;
        noteHang(found);
        // The state of things from before the shortening is lost to nobody who interrupts it.
        outcome_.failure = std::move(found);
        shorten(*outcome_.failure);
    }

    /// Who lives it again waits as long as it was waited for here, not as long as for a try.
    void noteHang(ExploredFailure& found) {
        if (found.breach.subject == noAnswer && !found.recorded.empty())
            found.recorded.back().died = noAnswerWithin(beginning_.patience);
    }

    void shorten(ExploredFailure& found) {
        std::size_t tries = 0;
        const auto fails = [&](const Script& script, const Script& round) {
            if (device::Interruption::signal() != 0 || ++tries > mostTries) return false;
            if (options_.progress) options_.progress(Exploring::Shortening, tries);
            return isSame(found, script, round);
        };
        if (!fails(found.script, found.round)) {
            found.isRepeatable = false;
            return;
        }
        const auto round = found.round;
        found.script =
            shrink<ExploredStep>(found.script, [&](const Script& script) { return fails(script, round); });
        if (!round.empty()) {
            found.round = shrink<ExploredStep>(
                round, [&](const Script& each) { return !each.empty() && fails(found.script, each); });
        }
    }

    /// Whether these break the same; what a phone has lived then is the failure's.
    bool isSame(ExploredFailure& found, const Script& script, const Script& round) {
        ExploredBeginning beginning = beginning_;
        // Each try that hangs is waited for to the end.
        if (found.breach.subject == noAnswer)
            beginning.patience =
                std::min(beginning.patience, std::max(beginning.patience / 4, shortestPatience));
        auto phone = ExploredPhone::begin(beginning);
        if (!phone) return false;
        auto breach = Result<std::optional<Breach>>(phone->breach());
        if (!*breach) breach = performAll(*phone, script);
        if (breach && !*breach && !round.empty()) breach = performRounds(*phone, round);
        if (breach && !*breach && round.empty()) breach = phone->end();
        if (!breach || !*breach || !(*breach)->isLike(found.breach)) return false;
        found.breach = **breach;
        found.recorded = phone->recorded();
        noteHang(found);
        return true;
    }

    const ExploredBeginning& beginning_;
    const ExplorationOptions& options_;
    Chance chance_;
    StepChoice choice_;
    ExplorationOutcome outcome_;
};

}  // namespace

Result<ExplorationOutcome> explore(const ExploredBeginning& beginning, const ExplorationOptions& options) {
    return Exploration(beginning, options).run();
}

}  // namespace settings
