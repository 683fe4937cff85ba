// SPDX-License-Identifier: MIT
#include "settings/program/RecordedRuns.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <random>
#include <utility>

#include "device/FileReplacement.h"
#include "device/HostFile.h"
#include "device/ProgramStart.h"
#include "device/TimeZone.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/RunLoop.h"
#include "settings/application/Application.h"
#include "settings/channels/Drive.h"
#include "settings/channels/JSON.h"
#include "settings/program/PhoneSetup.h"
#include "settings/program/Progress.h"
#include "settings/recording/AnswerDifference.h"
#include "settings/recording/RecordedRoot.h"
#include "settings/recording/RecordedWorld.h"
#include "settings/recording/Recorder.h"
#include "settings/recording/RecordingReader.h"
#include "settings/recording/Replayer.h"

namespace settings {

namespace fs = std::filesystem;
using platform::failure;
using platform::Result;

namespace {

std::string nameOfBundle(const std::string& directory) {
    std::error_code error;
    return fs::canonical(directory, error).filename().string();
}

/// What the phone is like, with what was made up for its root.
std::vector<std::string> pairsOf(device::DeviceOptions options) {
    const auto& facts = *platform::Device::current().facts;
    options.serialNumber = facts.serialNumber();
    options.UDID = facts.UDID();
    options.model = facts.model();
    return options.pairs();
}

/// A replay from its first step to its last.
class Run {
  public:
    Run(const CommandLine& line, RecordingReader& reader, Replayer& replayer)
        : line_(line), reader_(reader), replayer_(replayer) {}

    /// Whether all the answers are the same, or were renewed.
    Result<bool> play(const RecordingStart& start, Progress& progress, std::istream& stream) {
        renewed_ = lineText(start) + "\n";
        for (;;) {
            auto step = reader_.next();
            if (!step) return std::unexpected(step.error());
            if (!*step) break;
            if (const auto* command = std::get_if<RecordedStep::Command>(&(*step)->what))
                command_ = command->line;
            auto answer = replayer_.play(**step);
            if (!answer)
                return failure("Line " + std::to_string(reader_.line()) + ": " +
                               answer.error().localizedDescription);
            if (*answer && !isSame(**step, **answer) && !line_.update) return false;
            if (*answer) (*step)->answer = std::move(**answer);
            if (line_.update) renewed_ += lineText(**step) + "\n";
            progress.show(stream ? static_cast<std::uintmax_t>(stream.tellg()) : 0);
        }
        if (!reader_.isWhole()) {
            std::cerr << "quietrix-settings: The recording was cut off after line " << reader_.line()
                      << "; it was replayed up to there.\n";
        }
        return true;
    }
    std::size_t answers() const { return answers_; }
    std::size_t different() const { return different_; }
    const std::string& renewed() const { return renewed_; }

  private:
    bool isSame(const RecordedStep& step, const std::string& answer) {
        ++answers_;
        const auto was = parseJSON(*step.answer, recordedJSONDepth);
        const auto is = parseJSON(answer, recordedJSONDepth);
        const auto difference =
            firstDifference(was.value_or(platform::Value()), is.value_or(platform::Value()));
        if (!difference) return true;
        ++different_;
        if (!line_.update) {
            std::cout << line_.recording << ":" << reader_.line() << ": " << command_ << "\n  "
                      << difference->path << "\n    was: " << difference->was
                      << "\n    is:  " << difference->is << "\n";
        }
        return false;
    }

    const CommandLine& line_;
    RecordingReader& reader_;
    Replayer& replayer_;
    std::string command_;
    std::string renewed_;
    std::size_t answers_ = 0;
    std::size_t different_ = 0;
};

Result<int> finished(const CommandLine& line, const Run& run) {
    if (!line.update) {
        std::cout << "The same: " << run.answers() << " answers.\n";
        return 0;
    }
    if (run.different() > 0) {
        const std::string& text = run.renewed();
        if (const auto replaced =
                device::host::replaceFile(line.recording, platform::Data(text.begin(), text.end()));
            !replaced)
            return failure("The file could not be written: " + replaced.error() + ".");
    }
    std::cout << "Renewed: " << run.different() << " of " << run.answers() << " answers.\n";
    return 0;
}

Result<int> replayStream(const CommandLine& line, const std::string& resources, std::istream& stream) {
    RecordingReader reader(stream);
    const Result<RecordingStart> start = reader.start();
    if (!start) return std::unexpected(start.error());
    if (start->bundle != nameOfBundle(line.bundleDirectory)) {
        return failure("It is a recording of the bundle \"" + start->bundle +
                       "\": give that one with --bundle.");
    }
    device::setTimeZone(start->zone);
    const auto clock = RecordedTime::parse(start->clock);
    if (!clock) return failure("Line 1: " + clock.error().localizedDescription);
    std::vector<std::string> pairs = start->device;
    std::erase_if(pairs, device::DeviceOptions::isOfTheMachine);
    const auto options = device::DeviceOptions::parse(pairs);
    if (!options) return failure("Line 1: " + options.error().localizedDescription);
    const auto root = TemporaryRoot::create(start->files);
    if (!root) return std::unexpected(root.error());

    const auto world = RecordedWorld::aroundReplay(*clock, start->seed);
    const auto phone =
        PhoneSetup::create({root->path(), line.bundleDirectory, resources, *options, {}, world.get()});
    if (!phone) return std::unexpected(phone.error());
    Application application((*phone)->bundlePath(), phone->get());
    Replayer replayer(application, *world, root->path());
    Run run(line, reader, replayer);
    std::error_code error;
    Progress progress("replay", fs::file_size(line.recording, error));
    const auto same = run.play(*start, progress, stream);
    if (!same) return std::unexpected(same.error());
    return *same ? finished(line, run) : 1;
}

}  // namespace

Result<int> record(const CommandLine& line, const std::string& resources) {
    RecordingStart start;
    start.program = QUIETRIX_VERSION;
    start.seed = std::random_device()();
    start.zone = device::timeZone();
    device::setTimeZone(start.zone);
    start.clock = RecordedTime::textOfNow();
    start.bundle = nameOfBundle(line.bundleDirectory);
    const auto clock = RecordedTime::parse(start.clock);
    if (!clock) return std::unexpected(clock.error());

    const auto world = RecordedWorld::aroundRecorder(*clock, start.seed, line.rootDirectory);
    const auto phone = PhoneSetup::create(
        {line.rootDirectory, line.bundleDirectory, resources, line.device, {}, world.get()});
    if (!phone) return std::unexpected(phone.error());
    start.device = pairsOf((*phone)->options());
    auto files = filesOfRoot(line.rootDirectory);
    if (!files) return std::unexpected(files.error());
    start.files = *std::move(files);
    // Last: who cannot begin leaves no empty one.
    auto file = Recorder::createFile(line.recording);
    if (!file) return std::unexpected(file.error());

    Application application((*phone)->bundlePath(), phone->get());
    Recorder recorder(application, *world, *std::move(file));
    if (const auto begun = recorder.begin(start); !begun) return std::unexpected(begun.error());
    platform::dispatchMain(device::goOnWhenMemoryIsOut);
    const int status = Drive([&](const LineReader::Line& given) { return recorder.answer(given); },
                             STDIN_FILENO, STDOUT_FILENO)
                           .run();
    if (const auto ended = recorder.end(); !ended) return std::unexpected(ended.error());
    return status;
}

Result<int> replay(const CommandLine& line, const std::string& resources) {
    std::ifstream stream(line.recording, std::ios::binary);
    if (!stream) {
        return failure("The recording \"" + line.recording +
                       "\" could not be opened: " + device::host::message(errno) + ".");
    }
    auto status = replayStream(line, resources, stream);
    if (!status) return failure(line.recording + ": " + status.error().localizedDescription);
    return status;
}

}  // namespace settings
