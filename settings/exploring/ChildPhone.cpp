// SPDX-License-Identifier: MIT
#include "settings/exploring/ChildPhone.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string_view>
#include <utility>

#include "device/HostFile.h"
#include "device/Interruption.h"
#include "device/ProcessEnd.h"
#include "settings/channels/JSON.h"
#include "settings/recording/RecordingReader.h"

namespace settings {

using platform::Dictionary;
using platform::failure;
using platform::Result;
using std::chrono::steady_clock;

namespace {

/// An interruption that comes just before the waiting is seen so soon.
constexpr std::chrono::milliseconds lookAgain{200};
/// Of what a process said; a report of a sanitizer names the mistake in its first lines.
constexpr std::size_t mostSaid = 8192;

/// In the child: nothing of the parent's is in reach but the socket.
void settleIn(int errors, pid_t parent) {
    // Killed with the parent, however that ends. Interrupted is only the parent, which then ends this one.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(EXIT_FAILURE);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) signal(number, SIG_IGN);
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
}

/// The line that tells most.
std::string tellingLine(const std::string& text) {
    std::istringstream lines(text);
    std::string last;
    for (std::string line; std::getline(lines, line);) {
        for (const char* mark : {"ERROR: ", "runtime error: ", "Assertion ", "terminate called", "what():"}) {
            if (line.find(mark) != std::string::npos) return line;
        }
        if (!line.empty()) last = line;
    }
    return last;
}

}  // namespace

Result<ChildPhone> ChildPhone::begin(const RecordingStart& start, const PhoneLife& life) {
    const auto failed = [] {
        return failure("No process could be had for the phone: " + device::host::message(errno) + ".");
    };
    auto root = TemporaryRoot::create(start.files);
    if (!root) return std::unexpected(root.error());
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return failed();
    device::Descriptor ours(ends[0]);
    const device::Descriptor theirs(ends[1]);
    device::Descriptor errors(memfd_create("quietrix-explore", MFD_CLOEXEC));
    if (!errors) return failed();
    // Otherwise the child would write once more what waits to be written.
    std::cout << std::flush;
    const pid_t parent = getpid();
    const pid_t process = fork();
    if (process < 0) return failed();
    if (process == 0) {
        settleIn(errors.get(), parent);
        close(ours.get());
        // With all that is done at a program's end, which is when some sanitizers speak.
        std::exit(life(start, root->path(), theirs.get()));
    }
    return ChildPhone(*std::move(root), process, std::move(ours), std::move(errors));
}

ChildPhone::ChildPhone(TemporaryRoot root, pid_t process, device::Descriptor socket,
                       device::Descriptor errors)
    : root_(std::move(root)),
      process_(process),
      socket_(std::move(socket)),
      errors_(std::move(errors)),
      cutter_(RecordingReader::longestLine) {}

ChildPhone::~ChildPhone() {
    if (process_.id < 0) return;
    kill();
    takeLeave();
}

std::variant<Dictionary, PhoneDeath> ChildPhone::send(const RecordedStep& step,
                                                      std::chrono::seconds patience) {
    const std::string line = lineText(step) + "\n";
    for (std::string_view rest = line; !rest.empty();) {
        const ssize_t sent = ::send(socket_.get(), rest.data(), rest.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno != EINTR) break;
        if (sent > 0) rest.remove_prefix(static_cast<std::size_t>(sent));
    }
    const auto deadline = steady_clock::now() + patience;
    const auto text = receive(deadline);
    if (!text) {
        const bool isLate = device::Interruption::signal() != 0 || steady_clock::now() >= deadline;
        if (isLate) kill();
        PhoneDeath death = takeLeave();
        if (isLate)
            death = {std::string(noAnswer), "none came within " + std::to_string(patience.count()) + " s."};
        return death;
    }
    const auto report = parseJSON(*text, recordedJSONDepth);
    if (!report || !report->dictionary()) {
        kill();
        takeLeave();
        return PhoneDeath{
            "an answer that is no JSON",
            report ? "" : report.error().localizedDescription + " " + text->substr(0, mostSaid)};
    }
    return *report->dictionary();
}

std::optional<PhoneDeath> ChildPhone::end(std::chrono::seconds patience) {
    shutdown(socket_.get(), SHUT_WR);
    const auto deadline = steady_clock::now() + patience;
    // The socket is closed at the very end, when nothing can be said any more.
    receive(deadline);
    const bool isLate = steady_clock::now() >= deadline;
    if (isLate || device::Interruption::signal() != 0) kill();
    PhoneDeath death = takeLeave();
    if (isLate) death = {"no end", "it goes on after " + std::to_string(patience.count()) + " s."};
    if (death.how == device::processEndText(0)) return std::nullopt;
    return death;
}

std::optional<std::string> ChildPhone::receive(steady_clock::time_point deadline) {
    std::array<char, std::size_t{1} << 16> bytes{};
    while (lines_.empty()) {
        if (device::Interruption::signal() != 0 || steady_clock::now() >= deadline) return std::nullopt;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            std::min<steady_clock::duration>(deadline - steady_clock::now(), lookAgain));
        pollfd readable{socket_.get(), POLLIN, 0};
        if (poll(&readable, 1, static_cast<int>(left.count())) <= 0) continue;
        const ssize_t count = recv(socket_.get(), bytes.data(), bytes.size(), 0);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return std::nullopt;
        for (auto& line : cutter_.feed({bytes.data(), static_cast<std::size_t>(count)}))
            lines_.push_back(std::move(line.text));
    }
    std::string line = std::move(lines_.front());
    lines_.pop_front();
    return line;
}

void ChildPhone::kill() {
    ::kill(process_.id, SIGKILL);
}

PhoneDeath ChildPhone::takeLeave() {
    int status = 0;
    while (waitpid(process_.id, &status, 0) < 0 && errno == EINTR) continue;
    process_.id = -1;
    return {device::processEndText(status), tellingLine(said())};
}

std::string ChildPhone::said() const {
    std::string text(mostSaid, '\0');
    const ssize_t count = pread(errors_.get(), text.data(), text.size(), 0);
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return text;
}

}  // namespace settings
