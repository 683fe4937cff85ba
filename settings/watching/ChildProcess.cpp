// SPDX-License-Identifier: MIT
#include "settings/watching/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "device/ProcessDescriptors.h"
#include "platform/foundation/RunLoop.h"

namespace settings {

using device::Descriptor;
using platform::RunLoop;

namespace {

/// Above every number that a program is given one under.
constexpr int outOfTheWay = 64;

int spawnInGroup(std::vector<char*>& arguments, const std::vector<ChildProcess::Given>& given, pid_t& child) {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, STDERR_FILENO, STDOUT_FILENO);
    int last = STDERR_FILENO;
    for (const auto& [ours, theirs] : given) {
        posix_spawn_file_actions_adddup2(&files, ours, theirs);
        last = std::max(last, theirs);
    }
    posix_spawn_file_actions_addclosefrom_np(&files, last + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawnattr_setpgroup(&attributes, 0);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    const int error = posix_spawnp(&child, arguments[0], &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error;
}

}  // namespace

ChildProcess::ChildProcess(std::vector<std::string> arguments, std::vector<Given> given,
                           std::function<void(int)> ended)
    : ended_(std::move(ended)) {
    start(std::move(arguments), std::move(given));
}

void ChildProcess::start(std::vector<std::string> arguments, std::vector<Given> given) {
    // One number must not be taken before what has it is given away.
    std::vector<Descriptor> copies;
    for (Given& each : given)
        each.first = copies.emplace_back(fcntl(each.first, F_DUPFD_CLOEXEC, outOfTheWay)).get();
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    int error = std::ranges::all_of(copies, &Descriptor::operator bool) ? 0 : EMFILE;
    if (error == 0) error = spawnInGroup(pointers, given, id_);
    if (error == 0) {
        process_ = Descriptor(pidfd_open(id_, 0));
        if (!process_) {
            error = errno;
            kill(-id_, SIGKILL);
            waitpid(id_, nullptr, 0);
        }
    }
    if (error != 0) {
        started_ = platform::failure("\"" + arguments.front() +
                                     "\" could not be started: " + std::strerror(error) + ".");
        return;
    }
    RunLoop::main().watch(process_.get(), [this] { reap(); });
}

ChildProcess::~ChildProcess() {
    if (!process_) return;
    RunLoop::main().unwatch(process_.get());
    signal(SIGKILL);
    while (waitpid(id_, nullptr, 0) < 0 && errno == EINTR) continue;
}

void ChildProcess::signal(int number) const {
    if (process_) kill(-id_, number);
}

bool ChildProcess::waitForEnd(std::chrono::milliseconds atMost) {
    if (!process_) return true;
    pollfd ended{process_.get(), POLLIN, 0};
    if (poll(&ended, 1, static_cast<int>(atMost.count())) != 1) return false;
    RunLoop::main().unwatch(process_.get());
    while (waitpid(id_, nullptr, 0) < 0 && errno == EINTR) continue;
    process_ = Descriptor();
    return true;
}

void ChildProcess::reap() {
    int status = 0;
    // Nothing is left to wait for where this program was told to ignore the ends of its children.
    if (waitpid(id_, &status, WNOHANG) != id_ && errno != ECHILD) return;
    RunLoop::main().unwatch(process_.get());
    process_ = Descriptor();
    ended_(status);
}

std::string ChildProcess::sentenceOf(int status) {
    if (WIFSIGNALED(status)) {
        const int number = WTERMSIG(status);
        return "was ended by signal " + std::to_string(number) + " (" + strsignal(number) + ")";
    }
    return "ended with status " + std::to_string(WEXITSTATUS(status));
}

}  // namespace settings
