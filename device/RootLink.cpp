// SPDX-License-Identifier: MIT
#include "device/RootLink.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "device/EscapedText.h"
#include "device/HostFile.h"
#include "device/RootFileSystem.h"

namespace device {

namespace fs = std::filesystem;
using platform::failure;
using platform::Result;

namespace {

constexpr double lockSeconds = 30.0;
constexpr int maximumTemporaries = 1000;

bool isLink(const fs::path& link, const fs::path& target) {
    std::error_code error;
    return fs::read_symlink(link, error) == target && !error;
}

/// Makes the link under the first name that can be had. The root is locked, so whatever of this user's has
/// such a name was left by a process that was killed.
host::Explained<fs::path> temporaryLink(const fs::path& link, const fs::path& target) {
    fs::path candidate;
    for (int slot = 0; slot < maximumTemporaries; ++slot) {
        candidate =
            link.parent_path() / ("." + link.filename().string() + "." + std::to_string(slot) + ".new");
        struct stat status{};
        if (lstat(candidate.c_str(), &status) == 0 && S_ISLNK(status.st_mode) && status.st_uid == geteuid())
            unlink(candidate.c_str());
        if (symlink(target.c_str(), candidate.c_str()) == 0) return candidate;
        if (errno != EEXIST) return std::unexpected(host::message(errno));
    }
    return std::unexpected(quotedText(candidate.native()) + " and all names before it are taken");
}

host::Explained<void> replaceLink(const fs::path& link, const fs::path& target) {
    const auto temporary = temporaryLink(link, target);
    if (!temporary) return std::unexpected(temporary.error());
    if (std::rename(temporary->c_str(), link.c_str()) == 0) return {};
    const int reason = errno;
    unlink(temporary->c_str());
    return std::unexpected(host::message(reason));
}

}  // namespace

Result<PrivateLock> lockRoot(const std::string& rootDirectory) {
    auto lock = PrivateLock::take({rootDirectory + "/", "root"}, lockSeconds);
    if (!lock) return failure(quotedText(rootDirectory) + " could not be locked: " + lock.error() + ".");
    return *std::move(lock);
}

Result<void> linkDirectory(const std::string& rootDirectory, std::string_view path, const fs::path& target) {
    const RootFileSystem files(rootDirectory);
    const fs::path link = files.hostPath(path);
    if (isLink(link, target)) return {};
    const fs::path directory = link.parent_path();
    if (const auto made = host::createDirectories(directory.string()); !made)
        return failure(quotedText(directory.native()) +
                       " could not be created: " + host::message(made.error()) + ".");
    const auto lock = lockRoot(files.rootDirectory());
    if (!lock) return std::unexpected(lock.error());
    if (isLink(link, target)) return {};
    if (const auto replaced = replaceLink(link, target); !replaced) {
        return failure(quotedText(link.native()) + " could not be linked to " + quotedText(target.native()) +
                       ": " + replaced.error() + ".");
    }
    return {};
}

}  // namespace device
