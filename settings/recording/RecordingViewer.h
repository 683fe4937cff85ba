// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"
#include "settings/commands/CommandFields.h"
#include "settings/recording/RecordedMoments.h"

namespace settings {

/// Answers those who look at a recording in the screen protocol. They see the state in which it ended, ask
/// for what came and for the states in between, and cannot do anything to it. Knows none of them from
/// another. Main thread.
class RecordingViewer {
  public:
    /// Of "moments", for one answer; a page asks again for those that follow.
    static constexpr std::size_t mostMoments = 500;
    static constexpr std::size_t mostBytes = std::size_t{1} << 19;

    explicit RecordingViewer(RecordedMoments moments) : moments_(std::move(moments)) {}

    const RecordedMoments& moments() const { return moments_; }
    /// The answer to one line, without its line break. Any bytes may come.
    std::string answer(std::string_view line);

  private:
    /// What the answer has beside "ok" and the state, which is put into `shown`.
    platform::Result<platform::Dictionary> look(const CommandFields& fields, std::size_t& shown) const;
    platform::Result<platform::Dictionary> list(const CommandFields& fields) const;
    platform::Result<std::size_t> place(const CommandFields& fields, std::string_view key) const;
    platform::Dictionary description(std::size_t shown) const;

    RecordedMoments moments_;
};

}  // namespace settings
