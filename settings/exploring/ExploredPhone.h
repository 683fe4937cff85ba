// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Error.h"
#include "settings/exploring/AnswerChecks.h"
#include "settings/exploring/ChildPhone.h"
#include "settings/exploring/ExploredStep.h"
#include "settings/exploring/StepChoice.h"
#include "settings/recording/Recording.h"

namespace settings {

/// What every life of the explored phone begins with.
struct ExploredBeginning {
    RecordingStart start;
    PhoneLife life;
    /// A phone that takes longer to answer hangs.
    std::chrono::seconds patience{20};
};

/// One life of a phone, from its start on: steps are done one by one, what must always hold is looked at
/// after each, and all is kept as a recording has it. An error is why the exploration cannot go on, the
/// program's being interrupted among them. Main thread.
class ExploredPhone {
  public:
    /// Longer than any delayed call of a screen.
    static constexpr std::int64_t restMilliseconds = 7'200'000;

    template <class What>
    using Result = platform::Result<What>;

    /// The bundle is open then. A death at the start is a breach of the phone that comes back.
    static Result<ExploredPhone> begin(const ExploredBeginning& beginning);

    /// What the start, or the last step, has broken.
    const std::optional<Breach>& breach() const { return breach_; }
    /// Does the step, and gives what it broke.
    Result<std::optional<Breach>> perform(const ExploredStep& step);
    /// Lets everything come to rest, and the process end by itself.
    Result<std::optional<Breach>> end();

    const platform::Value& state() const { return checks_.state(); }
    const KnownPhone& known() const { return known_; }
    /// As PhoneHost counts them.
    std::int64_t memory() const { return memory_; }
    std::int64_t stored() const { return stored_; }
    /// All that was done, with the answers; of a process that died, the last step has `died`.
    const std::vector<RecordedStep>& recorded() const { return recorded_; }

  private:
    ExploredPhone(ChildPhone child, std::chrono::seconds patience)
        : child_(std::move(child)), patience_(patience) {}

    Result<void> send(RecordedStep step, const AskedCommand* asked);
    Result<void> sendCommand(const platform::Dictionary& fields, const std::string& line,
                             ExploredStep::Aim aim);
    void take(const platform::Dictionary& report, RecordedStep& step, const AskedCommand* asked);
    void noteDeath(const PhoneDeath& death, const RecordedStep& step);
    RecordedStep::FileChanged changed(const ExploredStep::FileChanged& file) const;

    ChildPhone child_;
    std::chrono::seconds patience_;
    AnswerChecks checks_;
    KnownPhone known_;
    std::optional<Breach> breach_;
    std::vector<RecordedStep> recorded_;
    std::int64_t time_ = 0;
    std::int64_t memory_ = 0;
    std::int64_t stored_ = 0;
    std::size_t machine_ = 0;
    bool isUndisturbed_ = false;
};

}  // namespace settings
