// SPDX-License-Identifier: MIT
#include "device/PrivateLock.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <utility>

#include "device/EscapedText.h"
#include "device/OwnFolder.h"

namespace device {

using host::Explained;

namespace {

using Instant = std::chrono::steady_clock::time_point;

/// The bytes of a lock file that are locked; they need not be there. Whoever waits for the lock holds the
/// turn meanwhile, so one that gives the lock back and wants it again at once finds the turn taken, and
/// starves nobody.
constexpr off_t turnByte = 0;
constexpr off_t heldByte = 1;
/// Shared by those who read the locked file.
constexpr off_t readersByte = 2;

/// A lock of the open file description: it goes with the last descriptor, and threads exclude each other too.
bool setByteLock(int descriptor, off_t byte, short kind) {
    struct flock lock{};
    lock.l_type = kind;
    lock.l_whence = SEEK_SET;
    lock.l_start = byte;
    lock.l_len = 1;
    return fcntl(descriptor, F_OFD_SETLK, &lock) == 0;
}

/// What keeps the byte from being locked by this descriptor, if anything does.
std::optional<struct flock> conflict(int descriptor, off_t byte) {
    struct flock lock{};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = byte;
    lock.l_len = 1;
    if (fcntl(descriptor, F_OFD_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return std::nullopt;
    return lock;
}

Instant deadlineIn(double seconds) {
    constexpr double longestWait = 1e6;
    const std::chrono::duration<double> wait(seconds > 0 ? std::min(seconds, longestWait) : 0.0);
    return std::chrono::steady_clock::now() +
           std::chrono::duration_cast<std::chrono::steady_clock::duration>(wait);
}

/// Tries until it has the lock or the time is over, and gives 0 or the error number; the system has no lock
/// with a time limit. The pauses shrink: who has waited long looks often, and so is ahead of those who have
/// just come.
template <class Try>
int waitForLock(const Try& take, Instant deadline) {
    using namespace std::chrono;
    constexpr microseconds shortestPause{500};
    for (microseconds pause{8000};; pause = std::max(pause / 2, shortestPause)) {
        const int error = take();
        if (error != EAGAIN && error != EACCES && error != EINTR) return error;
        const auto left = deadline - steady_clock::now();
        if (left <= left.zero()) return ETIMEDOUT;
        std::this_thread::sleep_for(std::min<steady_clock::duration>(pause, left));
    }
}

bool isKept(int descriptor, off_t byte, short kind) {
    const auto kept = conflict(descriptor, byte);
    return kept && kept->l_type == kind;
}

/// 0, ETIMEDOUT, or EPERM for a byte that a stranger shares while none of ours has the lock.
int lockByte(int descriptor, off_t byte, Instant deadline) {
    return waitForLock(
        [descriptor, byte] {
            if (setByteLock(descriptor, byte, F_WRLCK)) return 0;
            const int error = errno;
            const bool isStrangers =
                isKept(descriptor, byte, F_RDLCK) && !isKept(descriptor, heldByte, F_WRLCK);
            return isStrangers ? EPERM : error;
        },
        deadline);
}

Explained<OwnFolder> openFolder(const std::string& parent) {
    Explained<OwnFolder> folder = OwnFolder::open(parent, PrivateLock::folderName, platform::Missing::Make);
    if (!folder || (folder->mode & 077) == 0) return folder;
    if (auto tightened = folder->setMode(host::newDirectoryMode); !tightened)
        return std::unexpected(tightened.error());
    return folder;
}

Explained<Descriptor> openFile(const OwnFolder& folder, const std::string& name) {
    const std::string path = folder.path + "/" + name;
    Descriptor file(openat(folder.directory.get(), name.c_str(),
                           O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, host::newFileMode));
    if (!file) return aboutPath(path, host::message(errno));
    const auto status = host::regularFile(file.get());
    if (!status) return aboutPath(path, host::message(status.error()));
    if (status->st_uid != geteuid() && status->st_uid != folder.owner)
        return belongsToAnother(path, status->st_uid);
    if ((status->st_mode & 077) != 0 && fchmod(file.get(), host::newFileMode) != 0)
        return aboutPath(path, host::message(errno));
    return file;
}

/// Whoever has the lock leaves its process's number in the file: the system does not tell it.
void writeHolder(int file) {
    const std::string number = std::to_string(getpid());
    std::array<char, 16> text{};
    text.fill(' ');
    std::ranges::copy(number, text.begin());
    text.back() = '\n';
    // For people who look who it is; the lock is held without it.
    [[maybe_unused]] const ssize_t written = pwrite(file, text.data(), text.size(), 0);
}

std::string holder(int file) {
    if (const auto held = conflict(file, heldByte); held && held->l_pid > 0)
        return "the process " + std::to_string(held->l_pid);
    std::array<char, 16> text{};
    pid_t process = 0;
    const ssize_t length = pread(file, text.data(), text.size(), 0);
    if (length > 0) std::from_chars(text.data(), text.data() + length, process);
    return process > 0 ? "the process " + std::to_string(process) : "another process";
}

std::string secondsText(double seconds) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::max(seconds, 0.0) << (seconds == 1.0 ? " second" : " seconds");
    return text.str();
}

int lockInTurn(int file, Instant deadline) {
    if (const int error = lockByte(file, turnByte, deadline); error != 0) return error;
    const int error = lockByte(file, heldByte, deadline);
    static_cast<void>(setByteLock(file, turnByte, F_UNLCK));
    return error;
}

}  // namespace

Explained<PrivateLock> PrivateLock::take(const host::Location& file, double seconds) {
    const Instant deadline = deadlineIn(seconds);
    for (;;) {
        const Explained<OwnFolder> folder = openFolder(file.directory);
        if (!folder) return std::unexpected(folder.error());
        Explained<Descriptor> opened = openFile(*folder, file.name);
        if (!opened) return std::unexpected(opened.error());
        const std::string path = folder->path + "/" + file.name;
        const int lockFile = opened->get();
        const int error = lockInTurn(lockFile, deadline);
        // The path rather than the folder: that may have been made anew as well while this one waited.
        const bool isCurrent = host::isSameFile(AT_FDCWD, path, lockFile);
        if (error == 0 && isCurrent) {
            writeHolder(lockFile);
            return PrivateLock(*std::move(opened));
        }
        const bool isLate = error == ETIMEDOUT || std::chrono::steady_clock::now() > deadline;
        if (error != 0 && error != EPERM && error != ETIMEDOUT) return aboutPath(path, host::message(error));
        if (error == EPERM && isCurrent) {
            unlink(path.c_str());
        } else if (isLate) {
            return std::unexpected(holder(lockFile) + " still held " + quotedText(path) + " after " +
                                   secondsText(seconds));
        }
    }
}

Descriptor PrivateLock::shareOfReader(const host::Location& file, double seconds) {
    const std::string path = file.directory + std::string(folderName) + "/" + file.name;
    Descriptor share(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!share) return share;
    const int error = waitForLock([&] { return setByteLock(share.get(), readersByte, F_RDLCK) ? 0 : errno; },
                                  deadlineIn(seconds));
    return error == 0 ? std::move(share) : Descriptor();
}

void PrivateLock::keepReadersOut(double seconds) {
    waitForLock([this] { return setByteLock(file_.get(), readersByte, F_WRLCK) ? 0 : errno; },
                deadlineIn(seconds));
}

void PrivateLock::letReadersIn() {
    static_cast<void>(setByteLock(file_.get(), readersByte, F_UNLCK));
}

}  // namespace device
