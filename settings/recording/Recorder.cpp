// SPDX-License-Identifier: MIT
#include "settings/recording/Recorder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <span>
#include <utility>

#include "device/HostFile.h"
#include "device/PhonePaths.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/RunLoop.h"
#include "settings/application/StoredFiles.h"

namespace settings {

using platform::Result;
using platform::RunLoop;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace {

/// How long a "wait" may go without a look at the clock.
constexpr milliseconds lookAgain{1000};
constexpr double perSecond = 1000;

}  // namespace

Result<device::Descriptor> Recorder::createFile(const std::string& path) {
    const auto failed = [&](int error) {
        return platform::failure("The recording \"" + path +
                                 "\" could not be made: " + device::host::message(error) + ".");
    };
    device::Descriptor file(
        open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, device::host::newFileMode));
    if (!file) return failed(errno);
    // Until the file is closed; it is empty when two begin at the same time.
    if (flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        return platform::failure("The recording \"" + path +
                                 "\" could not be made: another program is recording into it.");
    }
    struct stat status{};
    if (fstat(file.get(), &status) != 0) return failed(errno);
    if (status.st_size > 0) {
        return platform::failure("The recording \"" + path +
                                 "\" could not be made: there is such a file, which is not written over.");
    }
    return file;
}

Recorder::Recorder(Application& application, RecordedWorld& world, device::Descriptor file)
    : application_(application), world_(world), file_(std::move(file)), start_(steady_clock::now()) {}

Result<void> Recorder::begin(const RecordingStart& start) {
    if (const Result<void> written = write(lineText(start)); !written) return written;
    beginStep(0);
    application_.start();
    session_.emplace(application_, Session::veryLong,
                     [this] { return Instant(milliseconds(world_.time().milliseconds())); });
    return endStep(RecordedStep::Begun());
}

Result<std::string> Recorder::answer(const LineReader::Line& line) {
    if (const Result<void> taken = takeOutside(); !taken) return std::unexpected(taken.error());
    beginStep(elapsed());
    using What = decltype(RecordedStep::what);
    const What what = line.oversized ? What(RecordedStep::OversizedLine()) : RecordedStep::Command{line.text};
    const auto answer =
        line.oversized ? std::optional(session_->answerToOversizedLine()) : session_->begin(line.text);
    if (const Result<void> written = endStep(what, answer); !written) return std::unexpected(written.error());
    return answer ? *answer : awaitAnswer();
}

Result<void> Recorder::end() {
    if (const Result<void> taken = takeOutside(); !taken) return taken;
    beginStep(elapsed());
    return endStep(RecordedStep::Ended());
}

/// Real time, but never behind the recorded one.
std::int64_t Recorder::elapsed() const {
    const auto real = std::chrono::duration_cast<milliseconds>(steady_clock::now() - start_).count();
    return std::max<std::int64_t>(real, world_.time().milliseconds());
}

void Recorder::beginStep(std::int64_t time) {
    world_.machine().beginStep({});
    application_.keepUp();
    world_.time().goOnTo(time);
}

Result<void> Recorder::endStep(decltype(RecordedStep::what) what, std::optional<std::string> answer) {
    // What a look at the screen has set off belongs to it.
    RunLoop::main().drain();
    world_.files().setPaths(watchedPaths());
    return write(lineText(RecordedStep{world_.time().milliseconds(), std::move(what),
                                       world_.machine().takeFound(), std::move(answer)}));
}

Result<void> Recorder::takeOutside() {
    // In this order: who posts has written his files before.
    const std::vector<std::string> names = world_.notifications().takeHeld();
    // At the time that is: what is done on the way to the next step sees the files already.
    for (const std::string& path : world_.files().takeChanged()) {
        if (const Result<void> taken = takeFile(path); !taken) return taken;
    }
    for (const std::string& name : names) {
        beginStep(elapsed());
        world_.notifications().deliver(name);
        if (const Result<void> written = endStep(RecordedStep::Notified{name}); !written) return written;
    }
    return {};
}

Result<void> Recorder::takeFile(const std::string& path) {
    RecordedStep::FileChanged changed{path, std::nullopt};
    const auto files = application_.phone()->files();
    // One that cannot be read is as good as gone.
    if (auto bytes = files->read(path)) changed.bytes = *std::move(bytes);
    return write(lineText(RecordedStep{world_.time().milliseconds(), std::move(changed), {}, std::nullopt}));
}

Result<std::string> Recorder::awaitAnswer() {
    for (;;) {
        sleepUntilSomething();
        if (const Result<void> taken = takeOutside(); !taken) return std::unexpected(taken.error());
        beginStep(elapsed());
        if (const auto answer = session_->resume()) {
            if (const Result<void> written = endStep(RecordedStep::WaitOver(), answer); !written)
                return std::unexpected(written.error());
            return *answer;
        }
        if (const Result<void> written = endStep(RecordedStep::TimePassed()); !written)
            return std::unexpected(written.error());
    }
}

/// Until others have done something, a delayed call is due, or the "wait" is over. Real time.
void Recorder::sleepUntilSomething() {
    const auto isSomething = [this] {
        return world_.notifications().holdsAny() || world_.files().hasChanged() || isTimerDue() ||
               Instant(milliseconds(elapsed())) >= *session_->waitsUntil();
    };
    while (!RunLoop::main().runUntil(isSomething, lookAgain)) continue;
}

bool Recorder::isTimerDue() const {
    const auto& clock = world_.time().clock();
    const auto next = RunLoop::main().nextTimer();
    if (!next || platform::Device::current().clock != clock) return false;
    const double ahead = next->secondsSinceReference - clock->now().secondsSinceReference;
    return ahead * perSecond <= static_cast<double>(elapsed() - world_.time().milliseconds());
}

std::vector<std::string> Recorder::watchedPaths() const {
    std::vector<std::string> paths{std::string(device::phonePaths::shellLog)};
    if (!application_.bundle()) return paths;
    for (const auto& [name, path] : storedFilePaths(*application_.bundle())) paths.push_back(path);
    return paths;
}

Result<void> Recorder::write(const std::string& line) {
    const std::string text = line + "\n";
    const auto written = device::host::writeAll(
        file_.get(), std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
    if (written) return {};
    return platform::failure("The recording could not be written: " + device::host::message(written.error()) +
                             ".");
}

}  // namespace settings
