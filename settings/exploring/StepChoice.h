// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/foundation/Value.h"
#include "settings/exploring/Chance.h"
#include "settings/exploring/ExploredStep.h"

namespace settings {

/// What an exploration has learnt of the phone apart from its state.
struct KnownPhone {
    /// The phone paths of the files that the bundle stores.
    std::vector<std::string> storedPaths;
    /// Notifications that something listens to.
    std::vector<std::string> names;
};

/// Chooses what to do next, from what the phone shows, and by preference what was seldom done and what leads
/// to screens that were seldom seen. What it chooses follows from the chance and from what it was given.
class StepChoice {
  public:
    /// The chance must outlive this.
    explicit StepChoice(Chance& chance) : chance_(chance) {}

    /// `state` is that of the last answer.
    ExploredStep next(const platform::Value& state, const KnownPhone& known);
    /// The same, but only what a finger can do.
    ExploredStep press(const platform::Value& state);
    /// What the phone shows after the step that was chosen last.
    void noteState(const platform::Value& state);
    /// A new phone begins without any of the old one's faults.
    void beginPhone() { machine_ = 0; }

    /// The screens that were seen, by their classes, and how often a step ended on them.
    const std::map<std::string, unsigned>& screens() const { return screens_; }

  private:
    struct Candidate {
        ExploredStep step;
        /// What counts as the same.
        std::string label;
        double weight;
    };
    using Candidates = std::vector<Candidate>;

    ExploredStep pick(Candidates candidates, const std::string& screen);
    void addRows(Candidates& candidates, const platform::Value& screen);
    void addValues(Candidates& candidates, const platform::Value& row, const MeantRow& meant);
    void addScreen(Candidates& candidates, const platform::Value& screen);
    static void addPresented(Candidates& candidates, const platform::Value& presented);
    ExploredStep fromOutside(const KnownPhone& known);
    ExploredStep changeOfDevice();
    ExploredStep fault(const platform::Value& state);
    ExploredStep look(const platform::Value& state);
    ExploredStep misuse(const platform::Value& state);
    /// Names what it means in one of the ways that do.
    ExploredStep aimedSomehow(ExploredStep step);

    Chance& chance_;
    std::size_t machine_ = 0;
    std::map<std::string, unsigned> done_;
    std::map<std::string, unsigned> screens_;
    /// Where what was done led last, by its label: a screen's class.
    std::map<std::string, std::string> leads_;
    std::string lastLabel_;
};

}  // namespace settings
