// SPDX-License-Identifier: MIT
#include "device/NotificationFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <iomanip>
#include <random>
#include <sstream>
#include <utility>

#include "device/HostFile.h"
#include "platform/foundation/LogSink.h"

namespace device {

using platform::failure;
using platform::Result;

namespace {

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

std::string socketOf(const std::string& entry) {
    return entry + std::string(socketSuffix);
}

std::string spillOf(const std::string& entry) {
    return entry + std::string(spillSuffix);
}

Descriptor makeSocket() {
    return Descriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

}  // namespace

Result<std::shared_ptr<const NotificationFolder>> NotificationFolder::open(const std::string& path) {
    const auto failed = [&](int errorNumber) {
        return failure("The notifications directory \"" + path +
                       "\" could not be opened: " + host::message(errorNumber) + ".");
    };
    if (const auto made = host::createDirectories(path); !made) return failed(made.error());
    Descriptor directory(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory) return failed(errno);
    struct stat status{};
    if (fstat(directory.get(), &status) != 0) return failed(errno);
    if ((status.st_mode & 07777) != host::newDirectoryMode &&
        fchmod(directory.get(), host::newDirectoryMode) != 0)
        return failed(errno);
    return std::shared_ptr<const NotificationFolder>(new NotificationFolder(path, std::move(directory)));
}

bool NotificationFolder::isInPlace() const {
    struct stat present{};
    struct stat own{};
    return stat(path_.c_str(), &present) == 0 && fstat(directory_.get(), &own) == 0 &&
           present.st_dev == own.st_dev && present.st_ino == own.st_ino;
}

Result<std::shared_ptr<const NotificationFolder::Seat>> NotificationFolder::takeSeat(
    const std::shared_ptr<const NotificationFolder>& folder) {
    const int directory = folder->directory_.get();
    const auto failed = [&] {
        return failure("No notification socket could be made in \"" + folder->path_ +
                       "\": " + host::message(errno) + ".");
    };
    // Until the kernel has finished binding, a socket's file looks like a dead process's and would be removed
    // as one. So it is bound under a name that nobody posts to, and renamed. Only removeAbandoned() of a
    // process that starts at the same instant may take it away even so: then a second attempt is made.
    constexpr int attempts = 5;
    for (int attempt = 1; attempt <= attempts; ++attempt) {
        Descriptor socket = makeSocket();
        // The file gets the mode that the socket has when it is bound.
        if (!socket || fchmod(socket.get(), host::newFileMode) != 0) return failed();
        std::string entry = uniqueEntry();
        const std::string unbound = entry + std::string(unboundSuffix);
        const sockaddr_un target = address(directory, unbound);
        if (bind(socket.get(), reinterpret_cast<const sockaddr*>(&target), sizeof target) != 0)
            return failed();
        if (renameat(directory, unbound.c_str(), directory, socketOf(entry).c_str()) == 0)
            return std::make_shared<const Seat>(folder, std::move(socket), std::move(entry));
        if (errno != ENOENT) {
            const auto error = failed();
            unlinkat(directory, unbound.c_str(), 0);
            return error;
        }
    }
    return failed();
}

bool NotificationFolder::has(const Seat& seat) const {
    return faccessat(directory_.get(), socketOf(seat.entry).c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
}

std::vector<std::string> NotificationFolder::namesIn(const char* directory) const {
    // Opened anew, because the descriptor that all threads share has only one place in the listing.
    const int descriptor =
        openat(directory_.get(), directory, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0) return {};
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(fdopendir(descriptor), closedir);
    std::vector<std::string> names;
    while (const dirent* entry = stream ? readdir(stream.get()) : nullptr) names.emplace_back(entry->d_name);
    std::erase_if(names, [](const std::string& name) { return name == "." || name == ".."; });
    return names;
}

void NotificationFolder::removeAbandoned() const {
    for (const std::string& name : namesIn(".")) {
        if (name.ends_with(unboundSuffix)) {
            const sockaddr_un target = address(directory_.get(), name);
            const Descriptor probe = makeSocket();
            if (connect(probe.get(), reinterpret_cast<const sockaddr*>(&target), sizeof target) != 0 &&
                errno == ECONNREFUSED) {
                unlinkat(directory_.get(), name.c_str(), 0);
            }
        } else if (name.ends_with(spillSuffix)) {
            const std::string entry = name.substr(0, name.size() - spillSuffix.size());
            // Folders are made only beside a socket that is there, and no socket's name comes twice.
            if (faccessat(directory_.get(), socketOf(entry).c_str(), F_OK, AT_SYMLINK_NOFOLLOW) != 0)
                removeEntry(entry);
        }
    }
}

void NotificationFolder::removeEntry(const std::string& entry) const {
    unlinkat(directory_.get(), socketOf(entry).c_str(), 0);
    const std::string folder = spillOf(entry);
    for (const std::string& link : namesIn(folder.c_str())) {
        const std::string path = inFolder(folder, link);
        unlinkat(directory_.get(), path.c_str(), 0);
    }
    unlinkat(directory_.get(), folder.c_str(), AT_REMOVEDIR);
}

void NotificationFolder::post(const std::string& name, const std::shared_ptr<const Seat>& leftOut) const {
    for (const std::string& file : namesIn(".")) {
        if (!file.ends_with(socketSuffix)) continue;
        const std::string entry = file.substr(0, file.size() - socketSuffix.size());
        if (!leftOut || entry != leftOut->entry) postTo(entry, name);
    }
}

/// Sends one datagram and gives the error number, 0 for success. The socket is one for this datagram alone:
/// what a stopped receiver does not take counts against its sender's memory, and would hold up those for
/// others.
int NotificationFolder::send(const std::string& entry, const std::string& name) const {
    const Descriptor socket = makeSocket();
    if (!socket) return errno;
    const sockaddr_un target = address(directory_.get(), socketOf(entry));
    const ssize_t sent = sendto(socket.get(), name.data(), name.size(), MSG_NOSIGNAL | MSG_DONTWAIT,
                                reinterpret_cast<const sockaddr*>(&target), sizeof target);
    return sent < 0 ? errno : 0;
}

void NotificationFolder::postTo(const std::string& entry, const std::string& name) const {
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

bool NotificationFolder::spill(const std::string& entry, const std::string& name) const {
    const std::string folder = spillOf(entry);
    if (mkdirat(directory_.get(), folder.c_str(), host::newDirectoryMode) != 0 && errno != EEXIST)
        return false;
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

void NotificationFolder::takeNames(const Seat& seat, std::vector<std::string>& names) const {
    std::array<char, maximumNameLength + 1> bytes{};
    for (int count = 0; count < datagramsAtOnce; ++count) {
        const ssize_t length = recv(seat.socket.get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (length < 0) break;
        const std::string_view name(bytes.data(), static_cast<std::size_t>(length));
        // Empty ones only wake; others that cannot be names were not sent by this class.
        if (!name.empty() && name.size() <= maximumNameLength && !name.contains('\0'))
            names.emplace_back(name);
    }
    const std::string folder = spillOf(seat.entry);
    for (const std::string& link : namesIn(folder.c_str())) {
        const std::string path = inFolder(folder, link);
        std::array<char, maximumNameLength + 1> name{};
        const ssize_t length = readlinkat(directory_.get(), path.c_str(), name.data(), name.size());
        // Taken away before it is handed on: what is posted from now on makes a new link.
        unlinkat(directory_.get(), path.c_str(), 0);
        if (length > 0) names.emplace_back(name.data(), static_cast<std::size_t>(length));
    }
}

}  // namespace device
