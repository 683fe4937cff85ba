// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/foundation/Value.h"

namespace settings {

/// What must always hold and did not.
struct Breach {
    /// A stable name: "died", "answer", "refusedChanged", …; see docs/exploring.md.
    std::string invariant;
    /// What tells it from others of that name: a class, a field, how the process died.
    std::string subject;
    /// A whole sentence.
    std::string text;

    bool isLike(const Breach& other) const {
        return invariant == other.invariant && subject == other.subject;
    }
};

/// What was asked of the phone.
struct AskedCommand {
    /// As it was sent; empty for a line that is no command.
    platform::Dictionary fields;
    /// Whether nothing came from outside and no time passed since the answer before.
    bool isUndisturbed = false;
    /// Whether it named a screen or row that is not there.
    bool isMisaimed = false;
    /// Whether all that it named was told by the answer before.
    bool isAimed = false;
};

/// Looks at each answer of one phone beside the one before. Main thread.
class AnswerChecks {
  public:
    /// The answers come in the order of the commands. `answer` is one that could be read.
    std::optional<Breach> check(const AskedCommand& asked, const platform::Value& answer);
    /// The state of the last answer; nil before the first.
    const platform::Value& state() const { return state_; }

  private:
    std::optional<Breach> checkForm(const AskedCommand& asked, const platform::Value& answer) const;
    std::optional<Breach> checkEvents(const platform::Value& state);
    std::optional<Breach> checkRefusal(const AskedCommand& asked, const platform::Value& answer) const;
    std::optional<Breach> checkLook(const AskedCommand& asked, const platform::Value& answer) const;
    std::optional<Breach> checkSet(const AskedCommand& asked, const platform::Value& answer) const;

    platform::Value state_;
    std::int64_t lastEvent_ = 0;
};

}  // namespace settings
