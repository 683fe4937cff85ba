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
    const auto openIt = [&path] {
        return Descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    };
    Descriptor directory = openIt();
    if (!directory && errno == ENOENT) {
        if (missing == platform::Missing::Leave) return OwnFolder{{}, std::move(path)};
        if (mkdir(path.c_str(), host::newDirectoryMode) != 0 && errno != EEXIST) {
            if (errno == ENOENT) return std::unexpected(host::message(errno));
            return aboutPath(path, host::message(errno));
        }
        directory = openIt();
    }
    const int error = errno;
    struct stat status{};
    // Of a folder that cannot be opened because it is somebody else's, that is what is wrong.
    if (directory ? fstat(directory.get(), &status) != 0 : lstat(path.c_str(), &status) != 0) {
        if (error != ENOTDIR) return aboutPath(path, host::message(error));
        if (missing == platform::Missing::Leave) return OwnFolder{{}, std::move(path)};
        return std::unexpected(host::message(error));
    }
    // Another version may have made something else of the name: programs that do and programs that do not
    // would not know of each other.
    if (!S_ISDIR(status.st_mode))
        return aboutPath(path,
                         host::message(ENOTDIR) + "; take it away while no other program uses this phone");
    struct stat above{};
    if (status.st_uid != geteuid() && (stat(parent.c_str(), &above) != 0 || status.st_uid != above.st_uid)) {
        return belongsToAnother(path, status.st_uid);
    }
    if (!directory) return aboutPath(path, host::message(error));
    return OwnFolder{std::move(directory), std::move(path), status.st_uid, status.st_mode & 07777};
}

Explained<void> OwnFolder::setMode(mode_t newMode) {
    if (fchmod(directory.get(), newMode) != 0) return aboutPath(path, host::message(errno));
    mode = newMode;
    return {};
}

}  // namespace device
