// SPDX-License-Identifier: MIT
#include "device/OwnFolder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "device/EscapedText.h"

namespace device {

using host::Explained;

std::unexpected<std::string> aboutPath(const std::string& path, const std::string& reason) {
    return std::unexpected(quotedText(path) + ": " + reason);
}

std::unexpected<std::string> belongsToAnother(const std::string& path, uid_t owner) {
    return std::unexpected(quotedText(path) + " belongs to another user (" + std::to_string(owner) + ")");
}

Explained<OwnFolder> OwnFolder::open(const std::string& parent, std::string_view name,
                                     platform::Missing missing) {
    std::string path = parent + std::string(name);
    struct stat status{};
    struct stat above{};
    int error = lstat(path.c_str(), &status) == 0 ? 0 : errno;
    if (error == ENOENT || error == ENOTDIR) {
        if (missing == platform::Missing::Leave) return OwnFolder{{}, std::move(path)};
        if (mkdir(path.c_str(), host::newDirectoryMode) != 0 && errno != EEXIST) {
            if (errno == ENOENT || errno == ENOTDIR) return std::unexpected(host::message(errno));
            return aboutPath(path, host::message(errno));
        }
        error = lstat(path.c_str(), &status) == 0 ? 0 : errno;
    }
    if (error != 0) return aboutPath(path, host::message(error));
    if (stat(parent.c_str(), &above) != 0) return aboutPath(path, host::message(errno));
    if (!S_ISDIR(status.st_mode)) return aboutPath(path, host::message(ENOTDIR));
    if (status.st_uid != geteuid() && status.st_uid != above.st_uid)
        return belongsToAnother(path, status.st_uid);
    Descriptor directory(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!directory || fstat(directory.get(), &status) != 0) return aboutPath(path, host::message(errno));
    return OwnFolder{std::move(directory), std::move(path), status.st_uid, status.st_mode & 07777};
}

Explained<void> OwnFolder::setMode(mode_t newMode) {
    if (fchmod(directory.get(), newMode) != 0) return aboutPath(path, host::message(errno));
    mode = newMode;
    return {};
}

}  // namespace device
