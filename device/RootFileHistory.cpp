// SPDX-License-Identifier: MIT
#include "device/RootFileHistory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "device/HostStamp.h"

namespace device {

namespace {

using platform::failure;
using platform::Result;

constexpr std::string_view prefix = ".";
constexpr std::string_view suffix = ".history";

bool isName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

}  // namespace

Result<std::unique_ptr<platform::FileHistory>> RootFileHistory::open(std::string_view path,
                                                                     const std::string& file,
                                                                     platform::Missing missing) {
    const std::size_t name = file.rfind('/') + 1;
    const std::string folderName = std::string(prefix) + file.substr(name) + std::string(suffix);
    auto folder = OwnFolder::open(file.substr(0, name), folderName, missing);
    if (!folder) {
        return failure("The history of the file \"" + std::string(path) +
                       "\" could not be opened: " + folder.error() + ".");
    }
    if (!folder->directory) return nullptr;
    return std::unique_ptr<platform::FileHistory>(new RootFileHistory(path, file, *std::move(folder)));
}

bool RootFileHistory::isFolderName(std::string_view name) {
    return name.size() > prefix.size() + suffix.size() && name.starts_with(prefix) && name.ends_with(suffix);
}

Result<std::vector<std::string>> RootFileHistory::names() const {
    // Another open directory than the folder's own, whose position all its users would share.
    const int again = openat(folder_.directory.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(again < 0 ? nullptr : fdopendir(again), closedir);
    const auto notListed = [this](int errorNumber) {
        return failure("The history of the file \"" + path_ +
                       "\" could not be listed: " + host::message(errorNumber) + ".");
    };
    if (!stream) return notListed(errno);
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = readdir(stream.get())) {
        if (isName(entry->d_name)) names.emplace_back(entry->d_name);
    }
    if (errno != 0) return notListed(errno);
    std::ranges::sort(names);
    return names;
}

Result<platform::FileStamp> RootFileHistory::stamp(const std::string& name) const {
    struct stat status{};
    if (!isName(name)) return failed(name, "looked at", EINVAL);
    if (fstatat(folder_.directory.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return failed(name, "looked at", errno);
    return host::stampOf(status);
}

Result<platform::Data> RootFileHistory::read(const std::string& name) const {
    if (!isName(name)) return failed(name, "read", EINVAL);
    const Descriptor file(
        openat(folder_.directory.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file) return failed(name, "read", errno);
    auto data = host::readFile(file);
    if (!data) return failed(name, "read", data.error());
    return *std::move(data);
}

Result<RootFileHistory::Kept> RootFileHistory::keep(const std::string& name) {
    if (!isName(name)) return failedToKeep(EINVAL);
    if (linkat(AT_FDCWD, file_.c_str(), folder_.directory.get(), name.c_str(), AT_SYMLINK_FOLLOW) != 0) {
        if (errno == EEXIST) return Kept::NameIsTaken;
        return failedToKeep(errno);
    }
    followRightsOf(name);
    return Kept::Yes;
}

Result<RootFileHistory::Kept> RootFileHistory::mark(const std::string& name) {
    if (!isName(name)) return failedToKeep(EINVAL);
    const Descriptor file(openat(folder_.directory.get(), name.c_str(),
                                 O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, host::newFileMode));
    if (file) return Kept::Yes;
    if (errno == EEXIST) return Kept::NameIsTaken;
    return failedToKeep(errno);
}

Result<void> RootFileHistory::remove(const std::string& name) {
    if (!isName(name)) return failed(name, "removed", EINVAL);
    if (unlinkat(folder_.directory.get(), name.c_str(), 0) != 0) return failed(name, "removed", errno);
    return {};
}

void RootFileHistory::followRightsOf(const std::string& name) {
    struct stat status{};
    if (fstatat(folder_.directory.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return;
    const mode_t readers = status.st_mode & 044;
    const mode_t mode = (folder_.mode & 07000) | host::newDirectoryMode | readers | readers >> 2;
    // A folder that stays closed to others, or whose owner is another, is no reason not to have kept the
    // file.
    if (mode != folder_.mode) static_cast<void>(folder_.setMode(mode));
}

std::unexpected<platform::Error> RootFileHistory::failedToKeep(int errorNumber) const {
    return failure("The file \"" + path_ +
                   "\" could not be kept in its history: " + host::message(errorNumber) + ".");
}

std::unexpected<platform::Error> RootFileHistory::failed(const std::string& name, const char* action,
                                                         int errorNumber) const {
    return failure("The state \"" + name + "\" of the file \"" + path_ + "\" could not be " + action + ": " +
                   host::message(errorNumber) + ".");
}

}  // namespace device
