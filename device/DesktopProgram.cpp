// SPDX-License-Identifier: MIT
#include "device/DesktopProgram.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>

#include "device/Descriptor.h"
#include "device/ProcessDescriptors.h"
#include "platform/foundation/RunLoop.h"

namespace device {

using platform::RunLoop;

namespace {

bool hasDisplay() {
    const auto isSet = [](const char* name) {
        const char* value = std::getenv(name);
        return value && *value;
    };
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

/// Shells tell of a death by signal with a status above 127.
bool hasFailed(int status) {
    return WIFEXITED(status) && WEXITSTATUS(status) != 0 && WEXITSTATUS(status) <= 127;
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

/// It may run for hours: the run loop waits for its end beside everything else.
void reapLater(pid_t child, std::function<void()> refused) {
    auto process = std::make_shared<Descriptor>(pidfd_open(child, 0));
    if (!*process) return;
    const int descriptor = process->get();
    RunLoop::main().watch(
        descriptor,
        [child, process = std::move(process), refused = std::move(refused)] {
            int status = 0;
            const pid_t ended = waitpid(child, &status, WNOHANG);
            RunLoop::main().unwatch(process->get());
            if (ended == child && hasFailed(status)) refused();
        },
        RunLoop::Serve::Always);
}

}  // namespace

bool hasDesktopProgram(const std::string& program) {
    const char* const list = std::getenv("PATH");
    std::string path = list ? list : "";
    while (hasDisplay() && !path.empty()) {
        const std::string directory = path.substr(0, path.find(':'));
        path.erase(0, directory.size() + 1);
        // An empty one is the present directory.
        const std::string file = (directory.empty() ? "." : directory) + "/" + program;
        struct stat status{};
        if (stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(file.c_str(), X_OK) == 0)
            return true;
    }
    return false;
}

bool startDesktopProgram(const std::string& program, const std::string& argument,
                         std::function<void()> refused) {
    if (!hasDisplay()) return false;
    const std::optional<pid_t> child = spawn(program, argument);
    if (child) reapLater(*child, std::move(refused));
    return child.has_value();
}

}  // namespace device
