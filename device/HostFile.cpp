// SPDX-License-Identifier: MIT
#include "device/HostFile.h"

#include <fcntl.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace device::host {

namespace {

constexpr std::size_t maximumFileSize = std::size_t{1} << 30;

std::unexpected<int> lastError() {
    return std::unexpected(errno);
}

}  // namespace

std::string message(int errorNumber) {
    return std::system_category().message(errorNumber);
}

Outcome<struct stat> regularFile(int descriptor) {
    struct stat status{};
    if (fstat(descriptor, &status) != 0) return lastError();
    if (S_ISDIR(status.st_mode)) return std::unexpected(EISDIR);
    if (!S_ISREG(status.st_mode)) return std::unexpected(EOPNOTSUPP);
    return status;
}

Outcome<platform::Data> readFile(const std::string& path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file) return lastError();
    return readFile(file);
}

Outcome<platform::Data> readFile(const Descriptor& file) {
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

Outcome<void> createFile(const std::string& path, const platform::Data& data, Sync sync) {
    const Descriptor file(
        open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, newFileMode));
    if (!file) return lastError();
    Outcome<void> written = writeAll(file.get(), data);
    if (written && sync == Sync::Yes && fsync(file.get()) != 0) written = lastError();
    if (!written) unlink(path.c_str());
    return written;
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

Outcome<Location> followLinks(std::string path) {
    constexpr int maximumLinks = 40;
    for (int links = 0; links <= maximumLinks; ++links) {
        // A name alone is one in the present directory.
        if (!path.empty() && path.find('/') == std::string::npos) path.insert(0, "./");
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

bool isSameFile(int directory, const std::string& name, int descriptor) {
    struct stat named{};
    struct stat opened{};
    return fstatat(directory, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           fstat(descriptor, &opened) == 0 && named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

Outcome<void> createDirectories(const std::string& path) {
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const std::string piece = path.substr(0, end);
        if (mkdir(piece.c_str(), newDirectoryMode) != 0) {
            if (errno != EEXIST) return lastError();
            struct stat status{};
            if (stat(piece.c_str(), &status) != 0) return lastError();
            if (!S_ISDIR(status.st_mode)) return std::unexpected(end == std::string::npos ? EEXIST : ENOTDIR);
        }
        if (end == std::string::npos) return {};
    }
}

}  // namespace device::host
