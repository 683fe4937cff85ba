// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <iosfwd>
#include <optional>
#include <string>

#include "platform/foundation/Error.h"
#include "settings/channels/LineReader.h"
#include "settings/recording/Recording.h"

namespace settings {

/// Reads a recording from a stream, a line at a time. Any bytes may come: an error is a sentence that names
/// the line and what is wrong with it, and nothing more can be read then.
class RecordingReader {
  public:
    /// The files of a root stand in one line.
    static constexpr std::size_t longestLine = std::size_t{256} << 20;

    /// The stream must outlive the reader.
    explicit RecordingReader(std::istream& stream) : stream_(stream) {}

    /// Called first, and once.
    platform::Result<RecordingStart> start();
    /// Empty at the end.
    platform::Result<std::optional<RecordedStep>> next();
    /// The same for who asks what an answer holds.
    platform::Result<std::optional<ReadStep>> nextRead();
    /// The number of the line that was read last, from 1.
    std::size_t line() const { return line_; }
    /// Where that line begins in the stream, and how many bytes it has without its line break.
    std::uint64_t offset() const { return offset_; }
    std::size_t length() const { return length_; }
    /// At the end: whether the recording was ended on purpose, or with the program's death that somebody has
    /// seen. Another one whose program was killed has no end, and perhaps a piece of a line that counts as
    /// not being there.
    bool isWhole() const { return isWhole_; }

  private:
    platform::Result<std::optional<std::string>> nextLine();
    platform::Result<void> checkOrder(const ReadStep& read);
    std::unexpected<platform::Error> wrong(const std::string& what) const;

    std::istream& stream_;
    LineReader cutter_{longestLine};
    std::deque<LineReader::Line> lines_;
    std::size_t line_ = 0;
    std::uint64_t offset_ = 0;
    std::size_t length_ = 0;
    bool hasBegun_ = false;
    bool isWhole_ = false;
    /// Whether an answer is still to come.
    bool waits_ = false;
    std::int64_t time_ = 0;
};

}  // namespace settings
