// SPDX-License-Identifier: MIT
#include "settings/recording/RecordingReader.h"

#include <istream>
#include <utility>
#include <vector>

#include "settings/channels/JSON.h"

namespace settings {

using platform::Result;

namespace {

constexpr std::size_t blockSize = std::size_t{1} << 16;

}  // namespace

Result<RecordingStart> RecordingReader::start() {
    const auto line = nextLine();
    if (!line) return std::unexpected(line.error());
    Result<RecordingStart> start = parseRecordingStart(line->value_or(""));
    // An empty file has no line to be named.
    if (!start && line_ == 0) return start;
    if (!start) return wrong(start.error().localizedDescription);
    return start;
}

Result<std::optional<RecordedStep>> RecordingReader::next() {
    Result<std::optional<ReadStep>> read = nextRead();
    if (!read) return std::unexpected(read.error());
    if (!*read) return std::nullopt;
    RecordedStep step = std::move((*read)->step);
    if (!(*read)->answer.isNil()) step.answer = jsonText((*read)->answer);
    return step;
}

Result<std::optional<ReadStep>> RecordingReader::nextRead() {
    const auto line = nextLine();
    if (!line) return std::unexpected(line.error());
    if (!*line) return std::nullopt;
    Result<ReadStep> read = readRecordedStep(**line);
    if (!read) return wrong(read.error().localizedDescription);
    if (const Result<void> checked = checkOrder(*read); !checked) return std::unexpected(checked.error());
    return *std::move(read);
}

Result<void> RecordingReader::checkOrder(const ReadStep& read) {
    const RecordedStep& step = read.step;
    const bool isAnswered = !read.answer.isNil();
    using Step = RecordedStep;
    if (isWhole_) return wrong("The recording has ended before.");
    if (std::holds_alternative<Step::Begun>(step.what) == hasBegun_)
        return wrong(hasBegun_ ? "The phone has been started before." : "The phone has not been started.");
    hasBegun_ = true;
    if (step.time < time_) return wrong("The time goes back.");
    time_ = step.time;
    const bool isAsked = std::holds_alternative<Step::Command>(step.what) ||
                         std::holds_alternative<Step::OversizedLine>(step.what);
    if (isAsked && waits_) return wrong("The command before has not been answered.");
    if (std::holds_alternative<Step::WaitOver>(step.what) && !waits_)
        return wrong("\"answer\" stands where nothing was asked.");
    if (isAsked && !isAnswered && std::holds_alternative<Step::OversizedLine>(step.what))
        return wrong("The answer is missing.");
    if (isAsked) waits_ = !isAnswered;
    if (std::holds_alternative<Step::WaitOver>(step.what)) waits_ = false;
    isWhole_ = std::holds_alternative<Step::Ended>(step.what) || step.died;
    return {};
}

/// Empty at the end; a last line that is not ended is none.
Result<std::optional<std::string>> RecordingReader::nextLine() {
    while (lines_.empty() && stream_) {
        std::vector<char> bytes(blockSize);
        stream_.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        for (auto& line : cutter_.feed({bytes.data(), static_cast<std::size_t>(stream_.gcount())}))
            lines_.push_back(std::move(line));
    }
    if (lines_.empty()) return std::nullopt;
    LineReader::Line line = std::move(lines_.front());
    lines_.pop_front();
    // Behind the line before and its break.
    if (line_ > 0) offset_ += length_ + 1;
    length_ = line.text.size();
    ++line_;
    if (line.oversized) return wrong("The line is longer than a recording's can be.");
    return std::move(line.text);
}

std::unexpected<platform::Error> RecordingReader::wrong(const std::string& what) const {
    return platform::failure("Line " + std::to_string(line_) + ": " + what);
}

}  // namespace settings
