// SPDX-License-Identifier: MIT
#include "settings/program/ExploreProgram.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <system_error>
#include <utility>

#include "device/FileReplacement.h"
#include "device/FreshRoot.h"
#include "device/HostFile.h"
#include "device/Interruption.h"
#include "device/TimeZone.h"
#include "settings/application/Application.h"
#include "settings/exploring/Exploration.h"
#include "settings/exploring/ExplorationReport.h"
#include "settings/exploring/PhoneHost.h"
#include "settings/program/Output.h"
#include "settings/program/PhoneSetup.h"
#include "settings/recording/RecordedRoot.h"
#include "settings/recording/RecordedWorld.h"

namespace settings {

namespace fs = std::filesystem;
using platform::failure;
using platform::Result;
using std::chrono::steady_clock;

namespace {

constexpr int nothingFound = 0;
constexpr int found = 1;

/// Everybody's exploration happens at the same time and place, so that a seed says all.
constexpr const char* clockOfStart = "2026-11-20T09:00:00.000";
constexpr const char* zoneOfStart = "CET-1CEST,M3.5.0,M10.5.0/3";

/// How far it has come, for who sits at a terminal.
class ExplorationProgress {
  public:
    explicit ExplorationProgress(std::uint64_t whole) : whole_(whole), isShown_(isatty(STDERR_FILENO) == 1) {}
    ~ExplorationProgress() {
        if (hasShown_) std::cerr << "\r\033[K" << std::flush;
    }
    ExplorationProgress(const ExplorationProgress&) = delete;
    ExplorationProgress& operator=(const ExplorationProgress&) = delete;

    void show(Exploring what, std::uint64_t done) {
        if (!isShown_ || steady_clock::now() < next_) return;
        next_ = steady_clock::now() + every;
        hasShown_ = true;
        std::cerr << "\r\033[K";
        if (what == Exploring::Steps)
            std::cerr << "explore: step " << done << " of " << whole_;
        else
            std::cerr << "explore: found something, shortening it: try " << done;
        std::cerr << std::flush;
    }

  private:
    static constexpr std::chrono::milliseconds every{200};

    std::uint64_t whole_;
    bool isShown_;
    bool hasShown_ = false;
    steady_clock::time_point next_ = steady_clock::now() + every;
};

Result<RootFiles> filesToBeginWith(const CommandLine& line, const std::string& resources) {
    std::error_code error;
    if (!line.rootDirectory.empty()) {
        if (!fs::is_directory(line.rootDirectory, error))
            return failure("The root \"" + line.rootDirectory + "\" is not a directory.");
        return filesOfRoot(line.rootDirectory);
    }
    const auto fresh = TemporaryRoot::create({});
    if (!fresh) return std::unexpected(fresh.error());
    if (const auto ready = device::prepareRoot(fresh->path(), resources, line.bundleDirectory); !ready)
        return std::unexpected(ready.error());
    return filesOfRoot(fresh->path());
}

Result<RecordingStart> startOf(const CommandLine& line, const std::string& resources, std::uint32_t seed) {
    auto files = filesToBeginWith(line, resources);
    if (!files) return std::unexpected(files.error());
    std::error_code error;
    RecordingStart start;
    start.program = QUIETRIX_VERSION;
    start.device = line.device.pairs();
    std::erase_if(start.device, device::DeviceOptions::isOfTheMachine);
    start.seed = seed;
    start.clock = clockOfStart;
    start.zone = zoneOfStart;
    start.bundle = fs::canonical(line.bundleDirectory, error).filename().string();
    start.files = *std::move(files);
    return start;
}

/// In a process of its own.
int livePhone(const CommandLine& line, const std::string& resources, const RecordingStart& start,
              const std::string& root, int socket) {
    const auto refuse = [&](const std::string& reason) {
        PhoneHost::refuse(socket, reason);
        return EXIT_FAILURE;
    };
    device::setTimeZone(start.zone);
    const auto clock = RecordedTime::parse(start.clock);
    if (!clock) return refuse(clock.error().localizedDescription);
    const auto world = RecordedWorld::aroundReplay(*clock, start.seed);
    const auto phone =
        PhoneSetup::create({root, line.bundleDirectory, resources, line.device, {}, world.get()});
    if (!phone) return refuse(phone.error().localizedDescription);
    Application application((*phone)->bundlePath(), phone->get());
    return PhoneHost(application, *world, root).serve(socket) ? EXIT_SUCCESS : EXIT_FAILURE;
}

std::unexpected<platform::Error> cannotWrite(const std::string& path, const std::string& reason) {
    return failure("The recording \"" + path + "\" could not be written: " + reason + ".");
}

/// Before hours are spent on what could not be kept.
Result<void> checkPlaceOfRecording(const std::string& path) {
    const auto target = device::host::followLinks(path);
    if (!target) return cannotWrite(path, device::host::message(target.error()));
    if (access(target->directory.c_str(), W_OK | X_OK) != 0)
        return cannotWrite(path, device::host::message(errno));
    std::error_code error;
    const auto status = fs::status(path, error);
    // A device or a pipe would be replaced by a file.
    if (fs::exists(status) && !fs::is_regular_file(status)) return cannotWrite(path, "It is no regular file");
    return {};
}

Result<void> writeRecording(const std::string& path, const std::string& text) {
    if (const auto written = device::host::replaceFile(path, platform::Data(text.begin(), text.end()));
        !written)
        return cannotWrite(path, written.error());
    return {};
}

/// As the signal would have ended it.
int endByInterruption(int signal) {
    std::cerr << "quietrix-settings: Interrupted.\n";
    return 128 + signal;
}

}  // namespace

Result<int> runExplore(const CommandLine& line, const std::string& resources) {
    const ExploreArguments& wanted = line.explore;
    const device::Interruption interruption;
    const std::uint32_t seed = wanted.seed ? *wanted.seed : std::random_device()();
    const std::string path = wanted.out.empty() ? "explore-" + std::to_string(seed) + ".rec" : wanted.out;
    if (const auto place = checkPlaceOfRecording(path); !place) return std::unexpected(place.error());
    auto start = startOf(line, resources, seed);
    if (!start) return std::unexpected(start.error());
    std::ofstream trace;
    if (!wanted.trace.empty()) {
        trace.open(wanted.trace, std::ios::binary | std::ios::trunc);
        if (!trace) return failure("The file \"" + wanted.trace + "\" cannot be written.");
    }

    const ExploredBeginning beginning{*std::move(start),
                                      [&](const RecordingStart& each, const std::string& root, int socket) {
                                          return livePhone(line, resources, each, root, socket);
                                      },
                                      std::chrono::seconds(wanted.patience)};
    auto outcome = [&] {
        ExplorationProgress progress(wanted.steps);
        return explore(beginning, {wanted.steps, seed,
                                   [&](Exploring what, std::uint64_t done) { progress.show(what, done); },
                                   trace.is_open() ? &trace : nullptr});
    }();
    if (trace.is_open() && !trace.flush())
        return failure("The file \"" + wanted.trace + "\" cannot be written.");
    if (!outcome) {
        if (const int signal = device::Interruption::signal(); signal != 0) return endByInterruption(signal);
        return std::unexpected(outcome.error());
    }
    Result<void> written;
    if (outcome->failure) written = writeRecording(path, recordingOf(beginning.start, *outcome->failure));
    // What was found is told although it could not be kept: its seed finds it again.
    const auto printed = printResult(wanted.json ? explorationAsJSON(*outcome, seed, path)
                                                 : explorationForPeople(*outcome, seed, path));
    if (!written) return std::unexpected(written.error());
    if (!printed) return std::unexpected(printed.error());
    return outcome->failure ? found : nothingFound;
}

}  // namespace settings
