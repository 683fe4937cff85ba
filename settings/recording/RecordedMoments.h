// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"
#include "settings/recording/Recording.h"

namespace settings {

/// What came to a recorded phone, a moment for each line. The states stay in the file and are read one at a
/// time: a long recording is larger than what anybody wants in memory. Main thread.
class RecordedMoments {
  public:
    /// How many of the file's bytes have been read.
    using Progress = std::function<void(std::uint64_t)>;

    /// Reads all of the file, a host path, and keeps it open: who replaces it changes nothing here. The error
    /// is a sentence that says why it cannot be read, or names the line that is wrong; so it does for a
    /// recording without a state.
    static platform::Result<RecordedMoments> read(const std::string& path, const Progress& progress);

    const RecordingStart& start() const { return start_; }
    /// The file's name without its directory.
    const std::string& name() const { return name_; }
    std::size_t count() const { return moments_.size(); }
    /// Whether it was ended on purpose; else its program was killed.
    bool isWhole() const { return isWhole_; }
    /// The last moment that has a state.
    std::size_t last() const { return last_; }

    /// What came at that moment: "line" (of the file, from 1), "time", "before" and "after", the moments
    /// whose states show the phone just before it and just after it, or null; "start", "command",
    /// "oversized", "outside" or "end" as in the file, but of a file only its path; of an answer "ok",
    /// "error" and "events". `at` is below count().
    platform::Dictionary moment(std::size_t at) const;
    /// About how many bytes that has as JSON.
    std::size_t size(std::size_t at) const { return moments_[at].size; }
    bool hasState(std::size_t at) const { return moments_[at].hasState; }
    /// The state that the answer of that moment holds. The error says that it holds none, or that the file
    /// cannot be read any more.
    platform::Result<platform::Dictionary> state(std::size_t at);

  private:
    struct Moment {
        std::uint64_t offset = 0;
        std::size_t length = 0;
        std::size_t size = 0;
        bool hasState = false;
        std::optional<std::size_t> before;
        std::optional<std::size_t> after;
        platform::Dictionary fields;
    };

    RecordedMoments() = default;
    platform::Result<void> readAll(const Progress& progress);
    void add(const ReadStep& read, Moment moment);

    std::ifstream stream_;
    std::string name_;
    RecordingStart start_;
    bool isWhole_ = false;
    std::size_t last_ = 0;
    std::vector<Moment> moments_;
};

}  // namespace settings
