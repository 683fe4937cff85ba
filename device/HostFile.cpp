// SPDX-License-Identifier: MIT
#include "device/HostFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <span>
#include <system_error>
#include <thread>
#include <utility>

namespace device::host {

namespace {

constexpr mode_t newFileMode = 0644;
constexpr std::size_t maximumFileSize = std::size_t{1} << 30;
/// Writers of one file at the same time; more of them fail rather than litter.
constexpr int maximumTemporaries = 1000;

std::unexpected<int> lastError() {
    return std::unexpected(errno);
}

Outcome<void> writeAll(int descriptor, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return lastError();
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return {};
}

/// Only a regular file may be read and written whole: a pipe or a device could wait or go on for ever.
Outcome<struct stat> regularFile(int descriptor) {
    struct stat status{};
    if (fstat(descriptor, &status) != 0) return lastError();
    if (S_ISDIR(status.st_mode)) return std::unexpected(EISDIR);
    if (!S_ISREG(status.st_mode)) return std::unexpected(EOPNOTSUPP);
    return status;
}

std::string temporaryName(const std::string& name, int slot) {
    return "." + name + "." + std::to_string(slot) + ".tmp";
}

struct Temporary {
    Descriptor file;
    std::string name;
    int slot;
};

/// The first temporary file of this target that no living writer holds. The lock tells: it goes with its
/// process.
Outcome<Temporary> claimTemporary(int directory, const std::string& name) {
    for (int slot = 0; slot < maximumTemporaries;) {
        const std::string candidate = temporaryName(name, slot);
        Descriptor file(
            openat(directory, candidate.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (!file) return lastError();
        if (flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
            ++slot;
            continue;
        }
        // Whoever held it may have renamed it to the target a moment ago: then it is no temporary any more.
        if (!isSameFile(directory, candidate, file.get())) continue;
        return Temporary{std::move(file), candidate, slot};
    }
    return std::unexpected(EBUSY);
}

void removeStaleTemporaries(int directory, const std::string& name, int firstSlot) {
    for (int slot = firstSlot; slot < maximumTemporaries; ++slot) {
        const std::string candidate = temporaryName(name, slot);
        const Descriptor file(openat(directory, candidate.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
        if (!file) return;
        if (flock(file.get(), LOCK_EX | LOCK_NB) != 0) continue;
        if (isSameFile(directory, candidate, file.get())) unlinkat(directory, candidate.c_str(), 0);
    }
}

Outcome<void> fill(const Temporary& temporary, int directory, const std::string& target,
                   const platform::Data& data) {
    struct stat old{};
    const bool exists = fstatat(directory, target.c_str(), &old, 0) == 0;
    if (exists && S_ISDIR(old.st_mode)) return std::unexpected(EISDIR);
    const int file = temporary.file.get();
    if (ftruncate(file, 0) != 0) return lastError();
    if (Outcome<void> written = writeAll(file, data); !written) return written;
    if (fchmod(file, exists ? old.st_mode & 07777 : newFileMode) != 0) return lastError();
    if (fsync(file) != 0) return lastError();
    if (renameat(directory, temporary.name.c_str(), directory, target.c_str()) != 0) return lastError();
    return {};
}

using Instant = std::chrono::steady_clock::time_point;

Instant deadlineIn(double seconds) {
    constexpr double longestWait = 1e6;
    const std::chrono::duration<double> wait(seconds > 0 ? std::min(seconds, longestWait) : 0.0);
    return std::chrono::steady_clock::now() +
           std::chrono::duration_cast<std::chrono::steady_clock::duration>(wait);
}

/// Tries until it has the lock or the time is over; the system has no lock with a time limit. The pauses
/// shrink: who has waited long looks often, and so is ahead of those who have just come.
template <class Try>
Outcome<void> waitForLock(const Try& take, Instant deadline) {
    using namespace std::chrono;
    constexpr microseconds shortestPause{500};
    for (microseconds pause{8000};; pause = std::max(pause / 2, shortestPause)) {
        if (take()) return {};
        if (errno != EWOULDBLOCK && errno != EACCES && errno != EINTR) return lastError();
        const auto left = deadline - steady_clock::now();
        if (left <= left.zero()) return std::unexpected(ETIMEDOUT);
        std::this_thread::sleep_for(std::min<steady_clock::duration>(pause, left));
    }
}

/// The bytes of a lock file that are locked; they need not be there. Whoever waits for the lock holds the
/// turn meanwhile, so one that gives the lock back and wants it again at once finds the turn taken, and
/// starves nobody.
constexpr off_t turnByte = 0;
constexpr off_t heldByte = 1;

/// A lock of the open file description: it goes with the last descriptor, and threads exclude each other too.
bool setByteLock(int descriptor, off_t byte, short kind) {
    struct flock lock{};
    lock.l_type = kind;
    lock.l_whence = SEEK_SET;
    lock.l_start = byte;
    lock.l_len = 1;
    return fcntl(descriptor, F_OFD_SETLK, &lock) == 0;
}

}  // namespace

std::string message(int errorNumber) {
    return std::system_category().message(errorNumber);
}

Outcome<platform::Data> readFile(const std::string& path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file) return lastError();
    const Outcome<struct stat> status = regularFile(file.get());
    if (!status) return std::unexpected(status.error());

    platform::Data data;
    const auto expected = static_cast<std::size_t>(status->st_size);
    if (expected > maximumFileSize) return std::unexpected(EFBIG);
    data.resize(expected + 1);  // one more, so that a file of the expected size ends with a short read
    std::size_t size = 0;
    for (;;) {
        const ssize_t got = read(file.get(), data.data() + size, data.size() - size);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return lastError();
        if (got == 0) break;
        size += static_cast<std::size_t>(got);
        if (size > maximumFileSize) return std::unexpected(EFBIG);
        if (size == data.size()) data.resize(size * 2);
    }
    data.resize(size);
    return data;
}

Outcome<void> overwriteFile(const std::string& path, const platform::Data& data) {
    const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, newFileMode));
    if (!file) return lastError();
    if (const auto status = regularFile(file.get()); !status) return std::unexpected(status.error());
    if (ftruncate(file.get(), 0) != 0) return lastError();
    return writeAll(file.get(), data);
}

Outcome<void> replaceFile(const std::string& path, const platform::Data& data) {
    const Outcome<Location> target = followLinks(path);
    if (!target) return std::unexpected(target.error());
    const Descriptor directory(open(target->directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory) return lastError();
    const Outcome<Temporary> temporary = claimTemporary(directory.get(), target->name);
    if (!temporary) return std::unexpected(temporary.error());

    Outcome<void> filled = fill(*temporary, directory.get(), target->name, data);
    if (!filled) {
        unlinkat(directory.get(), temporary->name.c_str(), 0);
        return filled;
    }
    removeStaleTemporaries(directory.get(), target->name, temporary->slot + 1);
    // Some file systems cannot sync a directory and need not.
    if (fsync(directory.get()) != 0 && errno != EINVAL) return lastError();
    return {};
}

Outcome<Location> followLinks(std::string path) {
    constexpr int maximumLinks = 40;
    for (int links = 0; links <= maximumLinks; ++links) {
        const std::size_t slash = path.rfind('/');
        if (slash == std::string::npos || slash + 1 == path.size()) return std::unexpected(EISDIR);
        const std::string directory = path.substr(0, slash + 1);
        std::array<char, 4096> link{};
        const ssize_t length = readlink(path.c_str(), link.data(), link.size());
        if (length < 0 && (errno == EINVAL || errno == ENOENT))
            return Location{directory, path.substr(slash + 1)};
        if (length < 0) return lastError();
        const std::string target(link.data(), static_cast<std::size_t>(length));
        path = target.starts_with('/') ? target : directory + target;
    }
    return std::unexpected(ELOOP);
}

Outcome<void> lock(int descriptor, double seconds) {
    return waitForLock([descriptor] { return flock(descriptor, LOCK_EX | LOCK_NB) == 0; },
                       deadlineIn(seconds));
}

Outcome<void> lockInTurn(int descriptor, double seconds) {
    const auto deadline = deadlineIn(seconds);
    const auto take = [descriptor](off_t byte) {
        return [descriptor, byte] { return setByteLock(descriptor, byte, F_WRLCK); };
    };
    if (Outcome<void> turn = waitForLock(take(turnByte), deadline); !turn) return turn;
    Outcome<void> held = waitForLock(take(heldByte), deadline);
    static_cast<void>(setByteLock(descriptor, turnByte, F_UNLCK));
    return held;
}

bool isSameFile(int directory, const std::string& name, int descriptor) {
    struct stat named{};
    struct stat opened{};
    return fstatat(directory, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           fstat(descriptor, &opened) == 0 && named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

Outcome<void> createDirectories(const std::string& path) {
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const std::string piece = path.substr(0, end);
        if (mkdir(piece.c_str(), 0755) != 0) {
            if (errno != EEXIST) return lastError();
            struct stat status{};
            if (stat(piece.c_str(), &status) != 0) return lastError();
            if (!S_ISDIR(status.st_mode)) return std::unexpected(end == std::string::npos ? EEXIST : ENOTDIR);
        }
        if (end == std::string::npos) return {};
    }
}

}  // namespace device::host
