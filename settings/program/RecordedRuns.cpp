// SPDX-License-Identifier: MIT
#include "settings/program/RecordedRuns.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <new>
#include <random>
#include <string_view>
#include <utility>

#include "device/FileReplacement.h"
#include "device/HostFile.h"
#include "device/Interruption.h"
#include "device/ProcessEnd.h"
#include "device/ProgramStart.h"
#include "device/TimeZone.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/RunLoop.h"
#include "settings/application/Application.h"
#include "settings/channels/Drive.h"
#include "settings/channels/JSON.h"
#include "settings/program/ChildRun.h"
#include "settings/program/Output.h"
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
using std::chrono::steady_clock;

namespace {

constexpr int different = 1;
constexpr int cannotReplay = 2;

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

/// How far a replay has come, for the process that watches it. In memory that both have.
struct ReplayPlace {
    static constexpr std::size_t longestCommand = 1024;

    std::atomic<std::size_t> line = 0;
    /// As much of it as fits.
    std::array<char, longestCommand> command{};
    bool isCommand = false;
    /// After so many seconds it was given up when it was recorded; 0 when it was not.
    std::atomic<std::int64_t> hungAfter = 0;
    /// The replay is over, and ends with that status.
    std::atomic<bool> isOver = false;
    int status = 0;
};

/// A replay from its first step to its last.
class Run {
  public:
    Run(const CommandLine& line, RecordingReader& reader, Replayer& replayer, ReplayPlace& place)
        : line_(line), reader_(reader), replayer_(replayer), place_(place) {}

    /// Whether all the answers are the same, or were renewed.
    Result<bool> play(const RecordingStart& start, Progress& progress, std::istream& stream) {
        renewed_ = lineText(start) + "\n";
        for (;;) {
            auto step = reader_.next();
            if (!step) return std::unexpected(step.error());
            if (!*step) break;
            note(**step);
            // It is answered now, which is all that can be said.
            if ((*step)->died && std::holds_alternative<RecordedStep::Command>((*step)->what))
                (*step)->answer = "{}";
            auto answer = replayer_.play(**step);
            if (!answer)
                return failure("Line " + std::to_string(reader_.line()) + ": " +
                               answer.error().localizedDescription);
            if ((*step)->died) {
                tellSurvival(*(*step)->died);
            } else if (*answer && !isSame(**step, **answer) && !line_.update) {
                return false;
            }
            (*step)->died.reset();
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
    void note(const RecordedStep& step) {
        const auto* command = std::get_if<RecordedStep::Command>(&step.what);
        command_ = command ? command->line : "";
        place_.line = reader_.line();
        place_.command.fill('\0');
        std::ranges::copy(std::string_view(command_).substr(0, place_.command.size() - 1),
                          place_.command.begin());
        place_.isCommand = command != nullptr;
        const auto hang = step.died ? hangOf(*step.died) : std::nullopt;
        place_.hungAfter = hang ? hang->count() : 0;
    }
    void tellSurvival(const std::string& died) {
        ++different_;
        std::cout << line_.recording << ":" << reader_.line() << ": " << command_
                  << "\n  The program died of it when it was recorded (" << died << "); now it lives.\n";
    }
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
    ReplayPlace& place_;
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

/// In a process of its own.
Result<int> replaySteps(const CommandLine& line, const std::string& resources, std::istream& stream,
                        RecordingReader& reader, const RecordingStart& start, const TemporaryRoot& root,
                        ReplayPlace& place) {
    device::setTimeZone(start.zone);
    const auto clock = RecordedTime::parse(start.clock);
    if (!clock) return failure("Line 1: " + clock.error().localizedDescription);
    std::vector<std::string> pairs = start.device;
    std::erase_if(pairs, device::DeviceOptions::isOfTheMachine);
    const auto options = device::DeviceOptions::parse(pairs);
    if (!options) return failure("Line 1: " + options.error().localizedDescription);

    const auto world = RecordedWorld::aroundReplay(*clock, start.seed);
    const auto phone =
        PhoneSetup::create({root.path(), line.bundleDirectory, resources, *options, {}, world.get()});
    if (!phone) return std::unexpected(phone.error());
    Application application((*phone)->bundlePath(), phone->get());
    Replayer replayer(application, *world, root.path());
    Run run(line, reader, replayer, place);
    std::error_code error;
    Progress progress("replay", fs::file_size(line.recording, error));
    const auto same = run.play(start, progress, stream);
    if (!same) return std::unexpected(same.error());
    return *same ? finished(line, run) : different;
}

/// Waits for the process of a replay. What comes back is the program's exit status.
Result<int> watch(const ChildRun& process, const CommandLine& line, const ReplayPlace& place) {
    std::size_t lastLine = 0;
    auto lineBegan = steady_clock::now();
    bool isHanging = false;
    const int status = process.wait([&] {
        if (place.line != lastLine) {
            lastLine = place.line;
            lineBegan = steady_clock::now();
        }
        // Only where it hung before: any other command may take as long as it likes.
        const std::chrono::seconds longest(place.hungAfter);
        isHanging = longest.count() > 0 && steady_clock::now() - lineBegan > longest;
        return isHanging;
    });
    if (const int signal = device::Interruption::signal(); signal != 0) {
        std::cerr << "quietrix-settings: Interrupted.\n";
        return 128 + signal;
    }
    if (WIFEXITED(status) && place.isOver && WEXITSTATUS(status) == place.status) return place.status;
    std::cout << line.recording << ":" << place.line << ": "
              << (place.isCommand ? place.command.data() : "(no command)") << "\n  The program "
              << (isHanging ? "gives no answer, as when it was recorded."
                            : "died of it: " + device::processEndText(status) + ".")
              << "\n";
    if (const auto printed = printResult(""); !printed) return std::unexpected(printed.error());
    return different;
}

Result<int> replayStream(const CommandLine& line, const std::string& resources, std::istream& stream) {
    RecordingReader reader(stream);
    const Result<RecordingStart> start = reader.start();
    if (!start) return std::unexpected(start.error());
    if (start->bundle != nameOfBundle(line.bundleDirectory)) {
        return failure("It is a recording of the bundle \"" + start->bundle +
                       "\": give that one with --bundle.");
    }
    const device::Interruption interruption;
    const auto root = TemporaryRoot::create(start->files);
    if (!root) return std::unexpected(root.error());
    void* shared =
        mmap(nullptr, sizeof(ReplayPlace), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) return failure("No memory could be had: " + device::host::message(errno) + ".");
    ReplayPlace& place = *new (shared) ReplayPlace;
    const auto process = ChildRun::begin([&] {
        auto status = replaySteps(line, resources, stream, reader, *start, *root, place);
        if (status) {
            if (const auto printed = printResult(""); !printed) status = std::unexpected(printed.error());
        }
        if (!status)
            std::cerr << "quietrix-settings: " << line.recording << ": "
                      << status.error().localizedDescription << "\n";
        place.status = status.value_or(cannotReplay);
        place.isOver = true;
        return place.status;
    });
    if (!process) return std::unexpected(process.error());
    return watch(*process, line, place);
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
