// SPDX-License-Identifier: MIT
#include "device/FileHead.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace device::host {

namespace {

std::string stateOf(const struct stat& status) {
    std::string state;
    for (const auto part :
         {static_cast<long long>(status.st_dev), static_cast<long long>(status.st_ino),
          static_cast<long long>(status.st_size), static_cast<long long>(status.st_mtim.tv_sec),
          static_cast<long long>(status.st_mtim.tv_nsec), static_cast<long long>(status.st_ctim.tv_sec),
          static_cast<long long>(status.st_ctim.tv_nsec)}) {
        state.append(std::to_string(part)).append(" ");
    }
    return state;
}

}  // namespace

Outcome<FileHead> readHead(const std::string& path, std::size_t limit) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status{};
    if (!file || fstat(file.get(), &status) != 0) return std::unexpected(errno);
    if (S_ISDIR(status.st_mode)) return std::unexpected(EISDIR);
    if (!S_ISREG(status.st_mode)) return std::unexpected(EOPNOTSUPP);
    FileHead head;
    head.state = stateOf(status);
    // One byte more tells whether the file goes on; its size may have changed meanwhile, or be unknown.
    const std::size_t expected =
        std::min(limit, static_cast<std::size_t>(std::max<off_t>(status.st_size, 0)));
    constexpr std::size_t smallest = 4096;
    head.bytes.resize(std::min(std::max(expected, smallest), limit) + 1);
    std::size_t length = 0;
    while (length < head.bytes.size()) {
        const ssize_t got = read(file.get(), head.bytes.data() + length, head.bytes.size() - length);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return std::unexpected(errno);
        if (got == 0) break;
        length += static_cast<std::size_t>(got);
        if (length == head.bytes.size() && length <= limit)
            head.bytes.resize(std::min(length * 2, limit + 1));
    }
    head.whole = length <= limit;
    head.bytes.resize(std::min(length, limit));
    return head;
}

}  // namespace device::host
