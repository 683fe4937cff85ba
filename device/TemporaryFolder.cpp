// SPDX-License-Identifier: MIT
#include "device/TemporaryFolder.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "device/OwnFolder.h"

namespace device {

namespace fs = std::filesystem;
using host::Explained;

namespace {

constexpr std::string_view prefix = "quietrix-scratch-";
/// One that looks for what was left may take a folder that has no lock yet.
constexpr int mostAttempts = 100;

Descriptor openFolder(const std::string& path) {
    return Descriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

bool isOwn(const Descriptor& folder) {
    struct stat status{};
    return fstat(folder.get(), &status) == 0 && status.st_uid == geteuid();
}

void removeIfLeft(const std::string& path) {
    const Descriptor folder = openFolder(path);
    if (!folder || !isOwn(folder) || flock(folder.get(), LOCK_EX | LOCK_NB) != 0) return;
    // Its program may have removed it just before, and another one may have made one of that name.
    if (!host::isSameFile(AT_FDCWD, path, folder.get())) return;
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

void removeLeftOnes(const fs::path& directory) {
    std::error_code error;
    for (fs::directory_iterator each(directory, error); !error && each != fs::directory_iterator();
         each.increment(error)) {
        if (each->path().filename().native().starts_with(prefix)) removeIfLeft(each->path().native());
    }
}

}  // namespace

Explained<TemporaryFolder> TemporaryFolder::create() {
    std::error_code error;
    const fs::path directory = fs::temp_directory_path(error);
    if (error) return std::unexpected("there is no temporary directory: " + error.message());
    removeLeftOnes(directory);
    const std::string pattern = (directory / prefix).native() + "XXXXXX";
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        std::string path = pattern;
        if (!mkdtemp(path.data())) return aboutPath(directory.native(), host::message(errno));
        Descriptor folder = openFolder(path);
        const bool isLocked = folder && flock(folder.get(), LOCK_EX | LOCK_NB) == 0;
        if (folder && !isLocked && errno != EWOULDBLOCK) return TemporaryFolder(std::move(path), {});
        if (isLocked && host::isSameFile(AT_FDCWD, path, folder.get()))
            return TemporaryFolder(std::move(path), std::move(folder));
    }
    return aboutPath(directory.native(), "each folder that was made there was taken away at once");
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    if (!path_.empty()) fs::remove_all(path_, ignored);
}

}  // namespace device
