// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "platform/foundation/Journal.h"
#include "platform/foundation/Object.h"

namespace platform {

/// Notes in the journal that the framework calls a method of a screen, for as long as the call lasts: "call"
/// with "class", "selector" and "row". Of any other object nothing is noted.
class CallNote final : public Journal::Call {
  public:
    /// Whether a call is told in any case, or only when something comes of it, as of a getter that does more
    /// than answer.
    enum class Told { Always, WithAnEffect };
    /// `receiver` and `selector` must outlive the note. `row` is the key of the row for which the method is
    /// called, 0 for none.
    CallNote(Told told, const Object& receiver, const std::string& selector, std::uint64_t row = 0);

  private:
    bool isNoted() const override { return isScreen_; }
    Dictionary fields() const override;

    const Object& receiver_;
    const std::string& selector_;
    std::uint64_t row_;
    bool isScreen_;
};

}  // namespace platform
