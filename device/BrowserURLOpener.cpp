// SPDX-License-Identifier: MIT
#include "device/BrowserURLOpener.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <thread>

#include "platform/foundation/Journal.h"

namespace device {

namespace {

/// The scheme in small letters; "" when there is none.
std::string scheme(const std::string& url) {
    std::string result = url.substr(0, url.find("://"));
    if (result.size() == url.size()) return {};
    std::ranges::transform(result, result.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
    return result;
}

bool hasDisplay() {
    const auto isSet = [](const char* name) {
        const char* value = std::getenv(name);
        return value && *value;
    };
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
}

/// Starts xdg-open in a session of its own, with nothing of ours open but standard error: standard output may
/// carry a protocol. Empty when it is not there.
std::optional<pid_t> spawnBrowser(const std::string& url) {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, STDERR_FILENO, STDOUT_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);

    std::string program = "xdg-open";
    std::string argument = url;
    char* const arguments[] = {program.data(), argument.data(), nullptr};
    pid_t child = 0;
    const int error = posix_spawnp(&child, program.c_str(), &files, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (error != 0) return std::nullopt;
    return child;
}

/// The browser may run for hours; a thread that waits for it keeps no dead child behind.
void reapLater(pid_t child) {
    std::thread([child] {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, nullptr);
        while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
    }).detach();
}

}  // namespace

bool BrowserURLOpener::canOpenURL(const std::string& url) const {
    const bool printable =
        std::ranges::all_of(url, [](char c) { return static_cast<unsigned char>(c) > 32 && c != 127; });
    if (!printable) return false;
    const std::string name = scheme(url);
    return name == "http" || name == "https" ||
           (name == "twitter" && twitter_ == TwitterApplication::Installed);
}

bool BrowserURLOpener::openURL(const std::string& url) {
    if (!canOpenURL(url)) return false;
    platform::Journal::shared().record("open", {{"url", url}});
    if (hasDisplay()) {
        if (const std::optional<pid_t> child = spawnBrowser(url)) {
            reapLater(*child);
            return true;
        }
    }
    std::fputs(("Please open " + url + "\n").c_str(), stderr);
    return true;
}

}  // namespace device
