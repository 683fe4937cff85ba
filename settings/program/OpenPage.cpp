// SPDX-License-Identifier: MIT
#include "settings/program/OpenPage.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstring>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "device/Descriptor.h"
#include "device/DesktopProgram.h"
#include "device/ProcessDescriptors.h"
#include "device/ProgramPaths.h"
#include "settings/channels/server/RunningServer.h"
#include "settings/channels/server/RuntimeFolder.h"

namespace settings {

using device::Descriptor;
using platform::failure;
using platform::Result;
using server::RunningServer;
using std::chrono::seconds;
using std::chrono::steady_clock;

namespace {

constexpr const char* idleMinutes = "10";
/// A service manager that takes longer to say whether it listens is left out.
constexpr seconds longestQuestion{5};
/// More than a program says that cannot begin.
constexpr off_t longestComplaint = 64 << 10;

/// Starts a program in a session of its own, with these as its output and errors; nothing when that failed,
/// and errno says why.
std::optional<pid_t> start(std::vector<std::string> arguments, int output, int errors) {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&files, errors, STDERR_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    pid_t child = 0;
    const int error = posix_spawnp(&child, pointers.front(), &files, &attributes, pointers.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (error == 0) return child;
    errno = error;
    return std::nullopt;
}

/// What poll() is told to wait for at most.
int millisecondsUntil(steady_clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

/// Whether there is something to read, or an end, by then.
bool comes(int descriptor, steady_clock::time_point deadline) {
    pollfd waited{descriptor, POLLIN, 0};
    for (;;) {
        const int count = poll(&waited, 1, millisecondsUntil(deadline));
        if (count > 0) return true;
        if (count == 0 || errno != EINTR) return false;
    }
}

/// Ends the program for good and waits for that.
void end(pid_t child) {
    kill(child, SIGKILL);
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
}

/// Whether the program says yes in time; no when it is not there.
bool succeeds(std::vector<std::string> arguments, seconds patience) {
    const auto deadline = steady_clock::now() + patience;
    const Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
    const auto child = start(std::move(arguments), nowhere.get(), nowhere.get());
    if (!child) return false;
    const Descriptor process(pidfd_open(*child, 0));
    if (!process || !comes(process.get(), deadline)) {
        end(*child);
        return false;
    }
    int status = 0;
    while (waitpid(*child, &status, 0) < 0) {
        if (errno != EINTR) return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Up to the end of the line, "" when it ends before; nothing when that takes longer.
std::optional<std::string> lineFrom(int descriptor, seconds patience) {
    const auto deadline = steady_clock::now() + patience;
    std::string line;
    std::array<char, 256> bytes{};
    while (line.find('\n') == std::string::npos) {
        if (!comes(descriptor, deadline)) return std::nullopt;
        const ssize_t count = read(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return "";
        line.append(bytes.data(), static_cast<std::size_t>(count));
    }
    line.erase(line.find('\n'));
    return line;
}

std::string secondsText(seconds time) {
    return std::to_string(time.count()) + (time == seconds(1) ? " second" : " seconds");
}

std::string firstLine(int file) {
    std::string text(longestComplaint, '\0');
    const ssize_t count = pread(file, text.data(), text.size(), 0);
    text.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    text.erase(std::min(text.find_first_of(std::string_view("\n\0", 2)), text.size()));
    return text;
}

/// Of the server that was started, which may have said why.
std::unexpected<platform::Error> ended(const std::string& reason) {
    return failure(reason.empty() ? "The server that was started has ended." : reason);
}

struct Started {
    pid_t process = 0;
    /// Its line with the address.
    std::string line;

    bool hasEnded() const { return waitpid(process, nullptr, WNOHANG) == process; }
};

/// Starts a server that stays when this program has ended.
Result<Started> startServer(const std::string& rootDirectory, seconds patience) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return failure(std::string("No server can be started: ") + std::strerror(errno) + ".");
    const Descriptor reading(ends[0]);
    std::optional<Descriptor> writing(std::in_place, ends[1]);
    // What it says later is nobody's; in a file of a fixed size that takes no more than it has.
    const Descriptor complaints(memfd_create("complaints", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!complaints || ftruncate(complaints.get(), longestComplaint) != 0 ||
        fcntl(complaints.get(), F_ADD_SEALS, F_SEAL_GROW) != 0)
        return failure(std::string("No server can be started: ") + std::strerror(errno) + ".");
    const auto child =
        start({device::ProgramPaths::ownFile(), "serve", "--root", rootDirectory, "--idle", idleMinutes},
              writing->get(), complaints.get());
    if (!child) return failure(std::string("No server can be started: ") + std::strerror(errno) + ".");
    writing.reset();
    const auto line = lineFrom(reading.get(), patience);
    if (!line) {
        // It would have nobody to tell its address.
        end(*child);
        return failure("The server that was started said nothing for " + secondsText(patience) +
                       " and was ended; \"quietrix-settings serve\" shows where it stops.");
    }
    if (!line->empty()) return Started{*child, *line};
    std::string reason = firstLine(complaints.get());
    if (constexpr std::string_view own = "quietrix-settings: "; reason.starts_with(own))
        reason.erase(0, own.size());
    return ended(reason);
}

/// The process that wrote its number into the file when it got the lock, for a sentence's begin.
std::string holder(int file) {
    std::array<char, 16> text{};
    pid_t process = 0;
    const ssize_t length = pread(file, text.data(), text.size(), 0);
    if (length > 0) std::from_chars(text.data(), text.data() + length, process);
    return process > 0 ? "The process " + std::to_string(process) : "Another process";
}

void writeHolder(int file) {
    const std::string number = std::to_string(getpid()) + "\n";
    // For people who look who it is; the lock is held without it.
    if (ftruncate(file, 0) != 0) return;
    [[maybe_unused]] const ssize_t written = pwrite(file, number.data(), number.size(), 0);
}

/// Only one that looks and starts at a time; no descriptor where there is no place to agree on that. An error
/// when another one does so for too long.
Result<Descriptor> lock(const std::string& runtimeDirectory, const std::string& rootDirectory,
                        seconds patience) {
    // The system waits for a lock either not at all or without an end.
    constexpr std::chrono::milliseconds pause{20};
    const auto folder = server::RuntimeFolder::open(runtimeDirectory);
    if (!folder) return Descriptor();
    const std::string name = "opening-" + server::RuntimeFolder::digestOfRoot(rootDirectory);
    Descriptor file(openat(folder->descriptor(), name.c_str(),
                           O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR));
    if (!file || !server::RuntimeFolder::strangenessOf(file.get()).empty()) return Descriptor();
    const auto deadline = steady_clock::now() + patience;
    while (flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) return Descriptor();
        if (steady_clock::now() >= deadline) {
            return failure(holder(file.get()) + " has been opening the page of this phone for " +
                           secondsText(patience) + "; end it, and try again.");
        }
        std::this_thread::sleep_for(pause);
    }
    writeHolder(file.get());
    return file;
}

void print(const std::string& url) {
    std::cout << "Quietrix Settings is at " << url << '\n' << std::flush;
}

void show(const RunningServer::Found& found) {
    print(found.url);
    // A browser that cannot be had has been made up for by the address.
    device::startDesktopProgram("xdg-open", found.file, [] {});
}

/// Of a server that runs.
std::string whyNotFound(const std::string& runtimeDirectory) {
    if (runtimeDirectory.empty()) return "XDG_RUNTIME_DIR is not set.";
    const auto folder = server::RuntimeFolder::open(runtimeDirectory);
    return folder ? "It could not leave its address in \"" + folder->path() + "\"."
                  : folder.error().localizedDescription;
}

}  // namespace

Result<void> openPage(const CommandLine& line) {
    const std::string runtime = device::runtimeDirectory().value_or("");
    const seconds patience = line.openPatience;
    const auto held = lock(runtime, line.rootDirectory, patience);
    if (!held) return std::unexpected(held.error());
    if (const auto found = RunningServer::find(runtime, line.rootDirectory)) {
        show(*found);
        return {};
    }
    const bool isUsualRoot = line.rootDirectory == device::defaultRootDirectory();
    if (isUsualRoot &&
        succeeds({"systemctl", "--user", "--quiet", "is-active", "quietrix-settings.socket"},
                 std::min(patience, longestQuestion)) &&
        succeeds({"systemctl", "--user", "--quiet", "start", "quietrix-settings.service"}, patience)) {
        if (const auto found = RunningServer::find(runtime, line.rootDirectory)) {
            show(*found);
            return {};
        }
    }
    const auto started = startServer(line.rootDirectory, patience);
    if (!started) return std::unexpected(started.error());
    if (const auto found = RunningServer::find(runtime, line.rootDirectory)) {
        show(*found);
        return {};
    }
    if (started->hasEnded()) return ended("");
    std::cout << started->line << '\n' << std::flush;
    std::cerr << "quietrix-settings: No browser is opened, and another open will not find this server: "
              << whyNotFound(runtime) << '\n';
    return {};
}

}  // namespace settings
