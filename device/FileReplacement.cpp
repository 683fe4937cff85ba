// SPDX-License-Identifier: MIT
#include "device/FileReplacement.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <utility>

namespace device::host {

namespace {

/// Writers of one file at the same time; more of them fail rather than litter.
constexpr int maximumTemporaries = 1000;

std::unexpected<int> lastError() {
    return std::unexpected(errno);
}

std::string temporaryName(const std::string& name, int slot) {
    return "." + name + "." + std::to_string(slot) + ".tmp";
}

struct Temporary {
    Descriptor file;
    std::string name;
    int slot;
};

/// Removes what a writer left behind that has ended; whatever else has the name stays. The lock tells: it
/// goes with its process.
void removeStale(int directory, const std::string& name) {
    const Descriptor file(openat(directory, name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file) return;
    const Outcome<struct stat> status = regularFile(file.get());
    if (!status || status->st_uid != geteuid()) return;
    if (flock(file.get(), LOCK_EX | LOCK_NB) != 0) return;
    // Whoever held it may have renamed it to the target a moment ago: then it is no temporary any more.
    if (isSameFile(directory, name, file.get())) unlinkat(directory, name.c_str(), 0);
}

/// A new file under the first name that nobody uses.
Explained<Temporary> claimTemporary(const Location& target, int directory) {
    for (int slot = 0; slot < maximumTemporaries; ++slot) {
        const std::string candidate = temporaryName(target.name, slot);
        removeStale(directory, candidate);
        Descriptor file(
            openat(directory, candidate.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode));
        if (!file && errno == EEXIST) continue;
        if (!file) return std::unexpected(message(errno));
        // Another writer may have taken it for one that was left behind, before it was locked.
        if (flock(file.get(), LOCK_EX | LOCK_NB) == 0 && isSameFile(directory, candidate, file.get()))
            return Temporary{std::move(file), candidate, slot};
    }
    return std::unexpected("\"" + target.directory + temporaryName(target.name, maximumTemporaries - 1) +
                           "\" and all names before it are taken");
}

void removeFollowing(int directory, const std::string& name, int slot) {
    struct stat status{};
    while (++slot < maximumTemporaries) {
        const std::string candidate = temporaryName(name, slot);
        if (fstatat(directory, candidate.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return;
        removeStale(directory, candidate);
    }
}

Outcome<void> fill(const Temporary& temporary, int directory, const std::string& target,
                   const platform::Data& data) {
    struct stat old{};
    const bool exists = fstatat(directory, target.c_str(), &old, 0) == 0;
    if (exists && S_ISDIR(old.st_mode)) return std::unexpected(EISDIR);
    const int file = temporary.file.get();
    if (Outcome<void> written = writeAll(file, data); !written) return written;
    if (exists && fchmod(file, old.st_mode & 07777) != 0) return lastError();
    if (fsync(file) != 0) return lastError();
    if (renameat(directory, temporary.name.c_str(), directory, target.c_str()) != 0) return lastError();
    return {};
}

}  // namespace

Explained<void> replaceFile(const std::string& path, const platform::Data& data) {
    const Outcome<Location> target = followLinks(path);
    if (!target) return std::unexpected(message(target.error()));
    const Descriptor directory(open(target->directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory) return std::unexpected(message(errno));
    const Explained<Temporary> temporary = claimTemporary(*target, directory.get());
    if (!temporary) return std::unexpected(temporary.error());

    if (const Outcome<void> filled = fill(*temporary, directory.get(), target->name, data); !filled) {
        unlinkat(directory.get(), temporary->name.c_str(), 0);
        return std::unexpected(message(filled.error()));
    }
    removeFollowing(directory.get(), target->name, temporary->slot);
    // Some file systems cannot sync a directory and need not.
    if (fsync(directory.get()) != 0 && errno != EINVAL) return std::unexpected(message(errno));
    return {};
}

}  // namespace device::host
