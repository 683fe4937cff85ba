// SPDX-License-Identifier: MIT
#include "device/DesktopProgram.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <thread>

namespace device {

namespace {

bool hasDisplay() {
    const auto isSet = [](const char* name) {
        const char* value = std::getenv(name);
        return value && *value;
    };
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

/// Standard output may carry a protocol: the program's goes to standard error. Empty when it is not there.
std::optional<pid_t> spawn(std::string program, std::string argument) {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, STDERR_FILENO, STDOUT_FILENO);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);

    char* const arguments[] = {program.data(), argument.data(), nullptr};
    pid_t child = 0;
    const int error = posix_spawnp(&child, program.c_str(), &files, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (error != 0) return std::nullopt;
    return child;
}

/// It may run for hours; a thread that waits for it keeps no dead child behind.
void reapLater(pid_t child) {
    std::thread([child] {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, nullptr);
        while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
    }).detach();
}

}  // namespace

bool startDesktopProgram(const std::string& program, const std::string& argument) {
    if (!hasDisplay()) return false;
    const std::optional<pid_t> child = spawn(program, argument);
    if (child) reapLater(*child);
    return child.has_value();
}

}  // namespace device
