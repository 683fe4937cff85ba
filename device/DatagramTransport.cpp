// SPDX-License-Identifier: MIT
#include "device/DatagramTransport.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <iomanip>
#include <memory>
#include <random>
#include <sstream>
#include <unordered_set>
#include <utility>

#include "device/HostFile.h"
#include "platform/foundation/LogSink.h"

namespace device {

namespace {

using platform::failure;
using platform::Result;

constexpr std::string_view socketSuffix = ".socket";
constexpr std::string_view spillSuffix = ".spill";
constexpr std::string_view unboundSuffix = ".new";
/// Datagrams taken before they are handed on, so that a flood cannot hold up what has arrived.
constexpr int datagramsAtOnce = 1024;

std::string hexadecimal(std::uint64_t number) {
    std::ostringstream text;
    text << std::hex << std::setw(16) << std::setfill('0') << number;
    return text.str();
}

/// A name that no process has had or will have: what bears it is safe to remove once its process is gone.
std::string uniqueEntry() {
    std::random_device random;
    const std::uint64_t high = random();
    return std::to_string(getpid()) + "-" + hexadecimal(high << 32 | random());
}

/// A socket's address through the open directory, which is short however long the directory's path is.
sockaddr_un address(int directory, const std::string& file) {
    sockaddr_un result{};
    result.sun_family = AF_UNIX;
    const std::string path = "/proc/self/fd/" + std::to_string(directory) + "/" + file;
    path.copy(result.sun_path, sizeof result.sun_path - 1);
    return result;
}

std::string inFolder(std::string folder, const std::string& link) {
    return folder.append("/").append(link);
}

Descriptor makeSocket() {
    return Descriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

}  // namespace

DatagramTransport::DatagramTransport(const std::string& rootDirectory)
    : directoryPath_(rootDirectory + "/private/var/run/notifications") {}

DatagramTransport::~DatagramTransport() {
    if (!thread_.joinable()) return;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(stop_.get(), &one, sizeof one);
    thread_.join();
    removeEntry(entry_);
}

Result<void> DatagramTransport::openDirectory() {
    const std::lock_guard lock(openingMutex_);
    if (directory_) return {};
    const auto failed = [&](int errorNumber) {
        return failure("The notifications directory \"" + directoryPath_ +
                       "\" could not be opened: " + host::message(errorNumber) + ".");
    };
    if (const auto made = host::createDirectories(directoryPath_); !made) return failed(made.error());
    Descriptor directory(open(directoryPath_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory) return failed(errno);
    struct stat status{};
    if (fstat(directory.get(), &status) != 0) return failed(errno);
    if ((status.st_mode & 07777) != 0700 && fchmod(directory.get(), 0700) != 0) return failed(errno);
    directory_ = std::move(directory);
    return {};
}

Result<void> DatagramTransport::bindSocket() {
    const auto failed = [&] {
        return failure("No notification socket could be made in \"" + directoryPath_ +
                       "\": " + host::message(errno) + ".");
    };
    // Until the kernel has finished binding, a socket's file looks like a dead process's and would be removed
    // as one. So it is bound under a name that nobody posts to, and renamed. Only removeAbandoned() of a
    // process that starts at the same instant may take it away even so: then a second attempt is made.
    constexpr int attempts = 5;
    for (int attempt = 1; attempt <= attempts; ++attempt) {
        Descriptor socket = makeSocket();
        if (!socket) return failed();
        const std::string entry = uniqueEntry();
        const std::string unbound = entry + std::string(unboundSuffix);
        const sockaddr_un target = address(directory_.get(), unbound);
        if (bind(socket.get(), reinterpret_cast<const sockaddr*>(&target), sizeof target) != 0)
            return failed();
        const std::string bound = entry + std::string(socketSuffix);
        if (renameat(directory_.get(), unbound.c_str(), directory_.get(), bound.c_str()) == 0) {
            socket_ = std::move(socket);
            entry_ = entry;
            return {};
        }
        if (errno != ENOENT) {
            const auto error = failed();
            unlinkat(directory_.get(), unbound.c_str(), 0);
            return error;
        }
    }
    return failed();
}

Result<void> DatagramTransport::start(Receiver receiver) {
    if (thread_.joinable()) return failure("The notification transport was started already.");
    if (Result<void> opened = openDirectory(); !opened) return opened;
    removeAbandoned();
    stop_ = Descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!stop_) return failure("No notification thread could be made: " + host::message(errno) + ".");
    if (Result<void> bound = bindSocket(); !bound) return bound;
    receiver_ = std::move(receiver);
    // Signals are the main thread's.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this] { receive(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return {};
}

std::vector<std::string> DatagramTransport::directoryNames(int directory, const char* path) const {
    // Opened anew, because the descriptor that all threads share has only one place in the listing.
    const int descriptor = openat(directory, path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0) return {};
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(fdopendir(descriptor), closedir);
    std::vector<std::string> names;
    while (const dirent* entry = stream ? readdir(stream.get()) : nullptr) names.emplace_back(entry->d_name);
    std::erase_if(names, [](const std::string& name) { return name == "." || name == ".."; });
    return names;
}

/// What processes left that were killed between two steps: sockets never renamed, folders without a socket.
void DatagramTransport::removeAbandoned() const {
    for (const std::string& name : directoryNames(directory_.get(), ".")) {
        if (name.ends_with(unboundSuffix)) {
            const sockaddr_un target = address(directory_.get(), name);
            const Descriptor probe = makeSocket();
            if (connect(probe.get(), reinterpret_cast<const sockaddr*>(&target), sizeof target) != 0 &&
                errno == ECONNREFUSED) {
                unlinkat(directory_.get(), name.c_str(), 0);
            }
        } else if (name.ends_with(spillSuffix)) {
            const std::string entry = name.substr(0, name.size() - spillSuffix.size());
            const std::string socket = entry + std::string(socketSuffix);
            // Folders are made only beside a socket that is there, and no socket's name comes twice.
            if (faccessat(directory_.get(), socket.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) != 0)
                removeEntry(entry);
        }
    }
}

void DatagramTransport::removeEntry(const std::string& entry) const {
    const std::string socket = entry + std::string(socketSuffix);
    unlinkat(directory_.get(), socket.c_str(), 0);
    const std::string folder = entry + std::string(spillSuffix);
    for (const std::string& link : directoryNames(directory_.get(), folder.c_str())) {
        const std::string path = inFolder(folder, link);
        unlinkat(directory_.get(), path.c_str(), 0);
    }
    unlinkat(directory_.get(), folder.c_str(), AT_REMOVEDIR);
}

void DatagramTransport::post(const std::string& name) {
    if (name.empty() || name.size() > maximumNameLength || name.find('\0') != std::string::npos) {
        platform::log("A notification was not posted: its name must have 1 to " +
                      std::to_string(maximumNameLength) + " bytes and no null character; it has " +
                      std::to_string(name.size()) + " bytes.");
        return;
    }
    if (const Result<void> opened = openDirectory(); !opened) {
        platform::log("The notification \"" + name +
                      "\" was not posted: " + opened.error().localizedDescription);
        return;
    }
    for (const std::string& file : directoryNames(directory_.get(), ".")) {
        if (file.ends_with(socketSuffix)) postTo(file.substr(0, file.size() - socketSuffix.size()), name);
    }
}

/// Sends one datagram and gives the error number, 0 for success. The socket is one for this datagram alone:
/// what a stopped receiver does not take counts against its sender's memory, and would hold up those for
/// others.
int DatagramTransport::send(const std::string& entry, const std::string& name) const {
    const Descriptor socket = makeSocket();
    if (!socket) return errno;
    const sockaddr_un target = address(directory_.get(), entry + std::string(socketSuffix));
    const ssize_t sent = sendto(socket.get(), name.data(), name.size(), MSG_NOSIGNAL | MSG_DONTWAIT,
                                reinterpret_cast<const sockaddr*>(&target), sizeof target);
    return sent < 0 ? errno : 0;
}

void DatagramTransport::postTo(const std::string& entry, const std::string& name) const {
    const int refused = send(entry, name);
    if (refused == 0 || refused == ENOENT) return;
    if (refused == ECONNREFUSED) return removeEntry(entry);
    if (spill(entry, name)) {
        // An empty datagram only wakes. That the socket is still full is as good: it has yet to be emptied.
        if (send(entry, std::string()) == ECONNREFUSED) removeEntry(entry);
    } else if (errno != ENOENT) {
        platform::log("The notification \"" + name + "\" did not reach the process of " + entry + ": " +
                      host::message(errno) + ".");
    }
}

bool DatagramTransport::spill(const std::string& entry, const std::string& name) const {
    const std::string folder = entry + std::string(spillSuffix);
    if (mkdirat(directory_.get(), folder.c_str(), 0700) != 0 && errno != EEXIST) return false;
    std::uint64_t key = std::hash<std::string>()(name);
    for (;;) {
        const std::string link = inFolder(folder, hexadecimal(key));
        if (symlinkat(name.c_str(), directory_.get(), link.c_str()) == 0) return true;
        if (errno != EEXIST) return false;
        std::array<char, maximumNameLength + 1> present{};
        const ssize_t length = readlinkat(directory_.get(), link.c_str(), present.data(), present.size());
        // The receiver takes a link away before it hands its name on, so an equal one that is there is to
        // come.
        if (length >= 0 && name == std::string_view(present.data(), static_cast<std::size_t>(length)))
            return true;
        if (length < 0 && errno != ENOENT) return false;
        if (length >= 0) ++key;  // another name of the same key
    }
}

bool DatagramTransport::hasPending() const {
    if (!thread_.joinable()) return false;
    // In this order: what is no longer in the socket was taken by the thread after it had become busy.
    pollfd readable{socket_.get(), POLLIN, 0};
    if (poll(&readable, 1, 0) > 0) return true;
    return busy_;
}

void DatagramTransport::receive() {
    std::array<pollfd, 2> descriptors{{{socket_.get(), POLLIN, 0}, {stop_.get(), POLLIN, 0}}};
    for (;;) {
        if (poll(descriptors.data(), descriptors.size(), -1) < 0) continue;
        if (descriptors[1].revents != 0) return;
        busy_ = true;
        std::vector<std::string> names;
        takeDatagrams(names);
        takeSpilled(names);
        std::unordered_set<std::string_view> delivered;
        for (const std::string& name : names) {
            if (delivered.insert(name).second) receiver_(name);
        }
        busy_ = false;
    }
}

void DatagramTransport::takeDatagrams(std::vector<std::string>& names) const {
    std::array<char, maximumNameLength + 1> bytes{};
    for (int count = 0; count < datagramsAtOnce; ++count) {
        const ssize_t length = recv(socket_.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (length < 0) return;
        const std::string_view name(bytes.data(), static_cast<std::size_t>(length));
        // Empty ones only wake; others that cannot be names were not sent by this class.
        if (!name.empty() && name.size() <= maximumNameLength && !name.contains('\0'))
            names.emplace_back(name);
    }
}

void DatagramTransport::takeSpilled(std::vector<std::string>& names) const {
    const std::string folder = entry_ + std::string(spillSuffix);
    for (const std::string& link : directoryNames(directory_.get(), folder.c_str())) {
        const std::string path = inFolder(folder, link);
        std::array<char, maximumNameLength + 1> name{};
        const ssize_t length = readlinkat(directory_.get(), path.c_str(), name.data(), name.size());
        // Taken away before it is handed on: what is posted from now on makes a new link.
        unlinkat(directory_.get(), path.c_str(), 0);
        if (length > 0) names.emplace_back(name.data(), static_cast<std::size_t>(length));
    }
}

}  // namespace device
