// SPDX-License-Identifier: MIT
#include "settings/recording/RecordedMoments.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>
#include <variant>

#include "settings/channels/JSON.h"
#include "settings/recording/RecordingReader.h"

namespace settings {

namespace fs = std::filesystem;
using platform::Dictionary;
using platform::failure;
using platform::Result;
using platform::Value;

namespace {

template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};

Dictionary fieldsOf(const RecordedStep& step) {
    using Step = RecordedStep;
    return std::visit(
        Overloaded{[](const Step::Begun&) { return Dictionary{{"start", true}}; },
                   [](const Step::Command& command) { return Dictionary{{"command", command.line}}; },
                   [](const Step::OversizedLine&) { return Dictionary{{"oversized", true}}; },
                   [](const Step::WaitOver&) { return Dictionary(); },
                   [](const Step::TimePassed&) { return Dictionary(); },
                   [](const Step::Notified& notified) {
                       return Dictionary{{"outside", Dictionary{{"notification", notified.name}}}};
                   },
                   [](const Step::FileChanged& file) {
                       return Dictionary{{"outside", Dictionary{{"file", file.path},
                                                                {"removed", !file.bytes.has_value()}}}};
                   },
                   [](const Step::Ended&) { return Dictionary{{"end", true}}; }},
        step.what);
}

Value valueIn(const Dictionary& dictionary, std::string_view key) {
    const auto entry = dictionary.find(key);
    return entry == dictionary.end() ? Value() : entry->second;
}

/// The answer's state; null for an answer without one.
const Dictionary* stateIn(const Value& answer) {
    if (!answer.dictionary()) return nullptr;
    const auto entry = answer.dictionary()->find("state");
    return entry == answer.dictionary()->end() ? nullptr : entry->second.dictionary();
}

Value placeOf(std::optional<std::size_t> moment) {
    return moment ? Value(static_cast<std::int64_t>(*moment)) : Value();
}

}  // namespace

Result<RecordedMoments> RecordedMoments::read(const std::string& path, const Progress& progress) {
    const auto failed = [&](const std::string& why) {
        return failure("The recording \"" + path + "\" could not be opened: " + why + ".");
    };
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    // To open what is no file might wait for ever, and what is read once cannot be gone back in.
    if (fs::exists(status) && !fs::is_regular_file(status)) return failed("It is no regular file");
    RecordedMoments moments;
    moments.stream_.open(path, std::ios::binary);
    if (!moments.stream_) return failed(std::generic_category().message(errno));
    moments.name_ = fs::path(path).filename().string();
    if (const Result<void> read = moments.readAll(progress); !read)
        return failure(path + ": " + read.error().localizedDescription);
    return moments;
}

Result<void> RecordedMoments::readAll(const Progress& progress) {
    RecordingReader reader(stream_);
    Result<RecordingStart> start = reader.start();
    if (!start) return std::unexpected(start.error());
    start_ = *std::move(start);
    for (;;) {
        const auto step = reader.nextRead();
        if (!step) return std::unexpected(step.error());
        if (!*step) break;
        Moment moment;
        moment.offset = reader.offset();
        moment.length = reader.length();
        moment.fields["line"] = reader.line();
        add(**step, std::move(moment));
        progress(reader.offset());
    }
    isWhole_ = reader.isWhole();
    std::optional<std::size_t> known;
    for (std::size_t at = 0; at < moments_.size(); ++at) {
        moments_[at].before = known;
        if (moments_[at].hasState) known = at;
    }
    if (!known) return failure("There is nothing to be seen: no command was answered while it was made.");
    last_ = *known;
    known.reset();
    for (std::size_t at = moments_.size(); at-- > 0;) {
        if (moments_[at].hasState) known = at;
        moments_[at].after = known;
    }
    return {};
}

void RecordedMoments::add(const ReadStep& read, Moment moment) {
    moment.fields["time"] = read.step.time;
    moment.fields.merge(fieldsOf(read.step));
    if (read.answer.dictionary()) {
        const Dictionary& answer = *read.answer.dictionary();
        moment.fields["ok"] = valueIn(answer, "ok");
        if (valueIn(answer, "error").string()) moment.fields["error"] = valueIn(answer, "error");
    }
    if (const Dictionary* state = stateIn(read.answer)) {
        moment.hasState = true;
        if (valueIn(*state, "events").array()) moment.fields["events"] = valueIn(*state, "events");
    }
    moment.size = jsonText(moment.fields).size();
    moments_.push_back(std::move(moment));
}

Dictionary RecordedMoments::moment(std::size_t at) const {
    Dictionary fields = moments_[at].fields;
    fields["before"] = placeOf(moments_[at].before);
    fields["after"] = placeOf(moments_[at].after);
    return fields;
}

Result<Dictionary> RecordedMoments::state(std::size_t at) {
    const Moment& moment = moments_[at];
    if (!moment.hasState) return failure("Moment " + std::to_string(at) + " has no state of its own.");
    std::string line(moment.length, '\0');
    stream_.clear();
    stream_.seekg(static_cast<std::streamoff>(moment.offset));
    stream_.read(line.data(), static_cast<std::streamsize>(line.size()));
    if (stream_) {
        const Result<ReadStep> read = readRecordedStep(line);
        const Dictionary* state = read ? stateIn(read->answer) : nullptr;
        if (state) return *state;
    }
    return failure("The recording has been changed since it was opened: moment " + std::to_string(at) +
                   " cannot be read any more.");
}

}  // namespace settings
