// SPDX-License-Identifier: MIT
#include "device/SystemShell.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/timerfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "device/ProcessDescriptors.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/RunLoop.h"

namespace device {

using platform::RunLoop;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace {

/// How long it may take to end by itself when this object goes.
constexpr int farewellMilliseconds = 2000;

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;
};

std::optional<Pipe> makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
    return Pipe{Descriptor(ends[0]), Descriptor(ends[1])};
}

void recordProcess(const char* state) {
    platform::Journal::shared().record("process", {{"name", SystemShell::name}, {"state", state}});
}

bool isShortage(int error) {
    return error == EMFILE || error == ENFILE || error == EAGAIN || error == ENOMEM;
}

void waitFor(pid_t child) {
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
}

/// In a session of its own, so that what a terminal sends to this program does not reach it, and with nothing
/// of ours open but the two ends and standard error. The result is posix_spawn's.
int spawnProgram(std::vector<std::string> arguments, int input, int output, pid_t& child) {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    const int error = posix_spawn(&child, pointers[0], &files, &attributes, pointers.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error;
}

}  // namespace

SystemShell::SystemShell(std::string program, std::string rootDirectory, Pace pace)
    : program_(std::move(program)), rootDirectory_(std::move(rootDirectory)), pace_(pace) {
    pendingCheck_ = RunLoop::main().addPendingCheck([this] { return isInFlight(); });
    if (const int error = spawn(); isShortage(error)) {
        shortage_ = couldNotRun() + std::strerror(error) + ".";
    } else {
        afterSpawn(error);
    }
}

SystemShell::~SystemShell() {
    RunLoop::main().removePendingCheck(pendingCheck_);
    if (timer_) RunLoop::main().unwatch(timer_.get());
    if (!child_) return;
    RunLoop::main().unwatch(child_->process.get());
    RunLoop::main().unwatch(child_->output.get());
    child_->input = Descriptor();
    pollfd ended{child_->process.get(), POLLIN, 0};
    if (poll(&ended, 1, farewellMilliseconds) != 1)
        pidfd_send_signal(child_->process.get(), SIGKILL, nullptr, 0);
    waitFor(child_->id);
}

bool SystemShell::killProcessByName(std::string_view process) {
    if (process != name) return false;
    inFlightUntil_ = steady_clock::now() + pace_.patience;
    if (!child_) {
        if (!timer_) startAnew();
        return false;
    }
    if (pidfd_send_signal(child_->process.get(), SIGKILL, nullptr, 0) != 0) return false;
    child_->isKilled = true;
    return true;
}

/// After it was given up.
void SystemShell::startAnew() {
    endsAtOnce_ = 0;
    start();
}

std::optional<pid_t> SystemShell::processId() const {
    return child_ ? std::optional(child_->id) : std::nullopt;
}

void SystemShell::start() {
    afterSpawn(spawn());
}

void SystemShell::afterSpawn(int error) {
    if (error != 0) return giveUp(std::strerror(error));
    // Nobody reads the journal yet while the phone is put together.
    if (std::exchange(hasRun_, true)) {
        recordProcess("started");
    } else {
        platform::dispatchMain([] { recordProcess("started"); });
    }
    inFlightUntil_ = steady_clock::now() + pace_.patience;
    RunLoop::main().watch(child_->process.get(), [this] { reap(); }, RunLoop::Serve::Always);
    RunLoop::main().watch(child_->output.get(), [this] { readOutput(); }, RunLoop::Serve::Always);
}

/// 0, or the error number.
int SystemShell::spawn() {
    auto input = makePipe();
    auto output = makePipe();
    if (!input || !output) return errno;
    std::vector<std::string> arguments{program_, rootDirectory_};
    if (hasRun_) arguments.emplace_back("--restarted");
    Child child;
    const int error =
        spawnProgram(std::move(arguments), input->readEnd.get(), output->writeEnd.get(), child.id);
    if (error != 0) return error;
    child.start = steady_clock::now();
    child.process = Descriptor(pidfd_open(child.id, 0));
    if (!child.process) {
        const int reason = errno;
        kill(child.id, SIGKILL);
        waitFor(child.id);
        return reason;
    }
    child.input = std::move(input->writeEnd);
    child.output = std::move(output->readEnd);
    child_ = std::move(child);
    return 0;
}

void SystemShell::readOutput() {
    std::array<char, 256> bytes{};
    const ssize_t count = read(child_->output.get(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) return;
    // Its end is seen by the process's own descriptor.
    if (count <= 0) return RunLoop::main().unwatch(child_->output.get());
    child_->isReady = true;
}

void SystemShell::reap() {
    // Nothing is left to wait for where this program was told to ignore the ends of its children.
    int status = 0;
    if (waitpid(child_->id, &status, WNOHANG) != child_->id && errno != ECHILD) return;
    // What it wrote last may not have been read yet.
    pollfd output{child_->output.get(), POLLIN, 0};
    if (!child_->isReady && poll(&output, 1, 0) == 1) readOutput();
    RunLoop::main().unwatch(child_->process.get());
    RunLoop::main().unwatch(child_->output.get());
    const Child ended = std::move(*child_);
    child_.reset();
    recordProcess("ended");

    const bool isYoung = steady_clock::now() - ended.start < pace_.steady;
    endsAtOnce_ = isYoung && !ended.isKilled && !isEndedByOthers(ended, status) ? endsAtOnce_ + 1 : 0;
    if (ended.isKilled || !isYoung) return start();
    if (endsAtOnce_ >= pace_.limit) return giveUp("it ends as soon as it is started");
    startAfter(pauseAfter(pace_, std::max(endsAtOnce_, 1)));
}

bool SystemShell::isEndedByOthers(const Child& child, int status) {
    return child.isReady && WIFSIGNALED(status) &&
           (WTERMSIG(status) == SIGKILL || WTERMSIG(status) == SIGTERM);
}

void SystemShell::startAfter(milliseconds pause) {
    timer_ = Descriptor(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK));
    itimerspec when{};
    when.it_value.tv_sec = pause.count() / 1000;
    // Never all zero, which would be no alarm at all.
    when.it_value.tv_nsec = pause.count() % 1000 * 1'000'000 + 1;
    if (!timer_ || timerfd_settime(timer_.get(), 0, &when, nullptr) != 0) return giveUp(std::strerror(errno));
    RunLoop::main().watch(
        timer_.get(),
        [this] {
            RunLoop::main().unwatch(timer_.get());
            timer_ = Descriptor();
            start();
        },
        RunLoop::Serve::Always);
}

std::string SystemShell::couldNotRun() const {
    return "The system shell \"" + program_ + "\" is not running: ";
}

void SystemShell::giveUp(const std::string& reason) {
    // Later: at the first start there may be no log yet.
    platform::dispatchMain([line = couldNotRun() + reason + "."] { platform::log(line); });
}

bool SystemShell::isInFlight() const {
    return child_ && (child_->isKilled || !child_->isReady) && steady_clock::now() < inFlightUntil_;
}

}  // namespace device
