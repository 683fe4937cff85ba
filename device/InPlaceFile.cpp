// SPDX-License-Identifier: MIT
#include "device/InPlaceFile.h"

#include <fcntl.h>

#include <cerrno>
#include <span>

#include "device/FileReplacement.h"
#include "device/PrivateLock.h"

namespace device::host {

namespace {

constexpr double longestLockWait = 2.0;
/// Far more than reading or writing the bytes takes.
constexpr double longestTouch = 0.25;

std::unexpected<int> lastError() {
    return std::unexpected(errno);
}

/// Room for what a file grows by is had before its bytes are touched, so that a full disk leaves them whole.
Outcome<void> reserve(int file, off_t size) {
    if (fallocate(file, FALLOC_FL_KEEP_SIZE, 0, size) == 0) return {};
    // Not every file system can.
    if (errno != ENOSPC && errno != EDQUOT && errno != EFBIG) return {};
    return lastError();
}

Outcome<void> writeOver(int file, std::span<const std::uint8_t> bytes) {
    for (off_t at = 0; !bytes.empty();) {
        const ssize_t written = pwrite(file, bytes.data(), bytes.size(), at);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return lastError();
        at += written;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return {};
}

Outcome<void> overwrite(int file, const platform::Data& data, PrivateLock& lock) {
    const Outcome<struct stat> status = regularFile(file);
    if (!status) return std::unexpected(status.error());
    const auto size = static_cast<off_t>(data.size());
    if (size > status->st_size) {
        if (Outcome<void> reserved = reserve(file, size); !reserved) return reserved;
    }
    lock.keepReadersOut(longestTouch);
    Outcome<void> written = writeOver(file, data);
    if (written && size < status->st_size && ftruncate(file, size) != 0) written = lastError();
    lock.letReadersIn();
    if (written && fsync(file) != 0) written = lastError();
    return written;
}

}  // namespace

Explained<void> writeInPlace(const std::string& path, const platform::Data& data) {
    const Outcome<Location> location = followLinks(path);
    if (!location) return std::unexpected(message(location.error()));
    Explained<PrivateLock> lock = PrivateLock::take(*location, longestLockWait);
    if (!lock) return std::unexpected(lock.error());
    const Descriptor file(open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file && errno == ENOENT) return replaceFile(path, data);
    if (!file) return std::unexpected(message(errno));
    if (const Outcome<void> written = overwrite(file.get(), data, *lock); !written)
        return std::unexpected(message(written.error()));
    return {};
}

Outcome<platform::Data> readInPlace(const std::string& path) {
    Descriptor share;
    if (const Outcome<Location> location = followLinks(path))
        share = PrivateLock::shareOfReader(*location, longestTouch);
    return readFile(path);
}

}  // namespace device::host
